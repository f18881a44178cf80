#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engines/disc/ReadConditions.h"
#include "engines/ground/EngineError.h"

namespace trackloom::engines::virtualrecorder {

/// What recorder.ini says. Every key is optional, and a value that is none stands as its default, so a recorder works
/// whatever lies in its file.
struct RecorderSettings {
  std::string vendor = "Virtual";
  std::string product = "CD Recorder";
  /// A multiple of 75 blocks a second; 0: the recorder does not tell.
  std::int16_t maximumSpeed = 52;
  bool writeGuard = true;
  /// Writes take as long as they would on a real recorder.
  bool realTimePacing = false;
  /// A blank disc takes the place of an ejected one.
  bool automaticFeed = true;
  bool refuseSelect = false;
  bool refuseEject = false;

  /// The address of the block at which a write, or a test write, fails.
  std::optional<std::int32_t> failWriteAt;
  std::optional<std::int32_t> failTestAt;
  /// The track before whose first block a write or a test fails, once its cache is full; 0: none.
  std::int16_t failTrack = 0;
  /// What fails when it is closed: "track", "session" or "disc"; empty: nothing.
  std::string failClosing;
  ReadConditions reading;
  bool failErasing = false;
  bool failEjecting = false;
  bool failContents = false;
  /// How many blocks of a write are in the cache when it fails, counted over all its tracks.
  std::optional<std::int32_t> failCachingAt;
  ErrorKind failKind = ErrorKind::Device;
  std::int32_t failNumber = 0x030C00;
  /// Empty: words that fit the place of the failure.
  std::string failText;

  /// How fast an operation goes at this multiple of the base speed, 0 standing for the recorder's highest; 0: as fast
  /// as it can.
  double blocksPerSecond(std::int16_t speed) const;
  /// What whoever reads at this multiple of the base speed is to meet.
  ReadConditions readConditions(std::int16_t speed) const;
  /// The EngineError of the faults, with these words where they have none of their own.
  EngineError failure(const std::string& otherwise) const;
  /// Throws it.
  [[noreturn]] void fail(const std::string& otherwise) const { throw failure(otherwise); }
  /// Fails where that is what the faults name.
  void failIfClosing(const std::string& part) const;

  static RecorderSettings parse(std::string_view ini);
  /// A recorder.ini that says all defaults, with comments.
  static std::string defaultIni();
};

}  // namespace trackloom::engines::virtualrecorder
