#pragma once

#include <cstdint>
#include <vector>

#include "engines/disc/DiscText.h"
#include "engines/disc/DriveSnapshot.h"

namespace trackloom::engines {

/// The order of one write: every track's length is known before the first block goes out.
struct WriteOrder {
  BlockKind kind = AudioBlocks;
  std::vector<std::int32_t> trackBlocks;
  /// Silent blocks before each audio track but the first of the disc.
  std::int32_t pause = standardPause;
  bool test = false;
  bool closeSession = true;
  bool closeDisc = true;
  /// A multiple of the base speed; 0: the recorder's own choice.
  std::int16_t speed = 0;
  /// What the disc is to say of an audio session that is closed; one that stays open has no place for it.
  DiscText text = {};

  bool closes() const { return closeSession || closeDisc; }
};

/// The blocks that an order takes of the room of its kind: all tracks and the pauses between them. The room left begins
/// where the first track would.
std::int64_t blocksOf(const WriteOrder& order);

/// Throws EngineError with words where the order makes no sense or this disc cannot take it: closed, of the other kind,
/// too many tracks, too little room.
void requireFits(const WriteOrder& order, const DiscState& disc);

}  // namespace trackloom::engines
