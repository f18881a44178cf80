#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ports/CDWriterXP.h"

namespace trackloom::fakes {

struct FakeDrive {
  std::string letter = "D";
  std::string vendor = "ACME";
  std::string product = "Writer";
  std::int16_t maxSpeed = 10;
  bool writeGuard = true;
  bool refuses = false;
};

/// A disc as an engine sees it. A closed one has no room, whatever the two numbers say.
struct FakeDisc {
  std::int32_t status = DiscEmpty;
  bool rewritable = false;
  std::int32_t freeAudio = 359849;
  std::int32_t freeData = 359849;
  std::int32_t type = DiscTypeCdRom;
  std::int16_t sessions = 0;
  std::int32_t lastSession = SessionEmpty;
  /// What has been recorded on it; a disc takes one kind only.
  std::optional<BlockKind> holds{};
  std::size_t tracks = 0;
  std::int32_t used = 0;

  static FakeDisc closed() { return {.status = DiscClosed, .sessions = 1, .lastSession = SessionClosed}; }
  static FakeDisc withOpenSession(BlockKind kind) {
    return {.status = DiscOpen, .sessions = 1, .lastSession = SessionClosed, .holds = kind};
  }

  std::int32_t room(std::int32_t kind) const {
    return status == DiscClosed ? 0 : kind == AudioBlocks ? freeAudio : freeData;
  }
};

/// How a write is to fail: at which of its blocks, with what code, number and words.
struct FakeFault {
  std::int32_t block = 0;
  std::int32_t code = DeviceError;
  std::int32_t number = 0x030C00;
  std::string words = "write error";
};

/// What all fake engines of one machine share: its drives, the disc, the files, and a transcript of every call that
/// changes something or asks the drive.
struct WriterStage {
  WriterStage();
  ~WriterStage();

  std::vector<FakeDrive> drives;
  std::optional<FakeDisc> disc;
  bool ejectFails = false;
  std::optional<FakeFault> fault;
  /// Length in blocks of the files that count as audio; all others are refused.
  std::map<std::string, std::int32_t> audio;
  /// Size in blocks of the files that can be read as data; all others are refused.
  std::map<std::string, std::int32_t> data;
  std::vector<std::string> transcript;
  /// Hears each line of the transcript as it comes, and each setting.
  std::function<void(const std::string&)> onLine;
  /// The calls at which an engine throws instead of answering, as they stand in the transcript.
  std::set<std::string> broken;

  void tell(const std::string& line) const;
  void note(const std::string& call);
  /// The part of the transcript since the last call.
  std::vector<std::string> take();
};

}  // namespace trackloom::fakes
