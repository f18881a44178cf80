#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engines/disc/DiscText.h"
#include "engines/ground/Blocks.h"
#include "ports/CDWriterXP.h"

namespace trackloom::engines {

/// What a recorder tells of itself; the texts as the device gives them, untrimmed.
struct DriveIdentity {
  std::string vendor;
  std::string product;
  std::int16_t maxWriteSpeed = 0;
  bool hasWriteGuard = false;
};

/// A track on a disc, in blocks; `start` is the first block of its content.
struct DiscTrack {
  BlockKind kind = AudioBlocks;
  std::int32_t start = 0;
  std::int32_t length = 0;
  /// From 1.
  std::int16_t session = 1;
};

/// What lies in a recorder; all sizes and addresses in blocks.
struct DiscState {
  /// By what the recorder tells this disc from any other; empty: by nothing but its tracks.
  std::string id;
  DiscStatusCode status = DiscEmpty;
  DiscTypeCode type = DiscTypeCdRom;
  bool rewritable = false;
  std::int16_t sessions = 0;
  SessionStatusCode lastSession = SessionEmpty;
  std::int32_t freeAudioBlocks = 0;
  std::int32_t freeDataBlocks = 0;
  /// Address of the first block that the next track's content would take.
  std::int32_t nextWritable = 0;
  std::vector<DiscTrack> tracks;
  /// The names that it bears.
  DiscText text = {};

  std::int32_t freeBlocks(std::int32_t kind) const { return kind == AudioBlocks ? freeAudioBlocks : freeDataBlocks; }
};

/// A drive and what lies in it, at one moment.
struct DriveSnapshot {
  DriveIdentity identity;
  /// Nothing: no disc is loaded and ready.
  std::optional<DiscState> disc;
};

}  // namespace trackloom::engines
