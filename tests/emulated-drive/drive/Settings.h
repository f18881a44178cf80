#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Sense.h"

namespace emulated {

/// A line `fault = <command or *> <K/CC/QQ, removed or unplugged> [block N] [after N] [times N]` of drive.ini.
struct Fault {
  std::string command;
  Sense sense;
  bool removed = false;
  bool unplugged = false;
  /// Only a command that reaches this block fails.
  std::optional<std::int32_t> block;
  /// How many commands of that name pass first.
  std::int32_t after = 0;
  /// How often it comes; 0: always.
  std::int32_t times = 0;
};

/// What a drive is and how it behaves, as drive.ini says; every line may be missing.
struct Settings {
  std::string vendor = "EMULATED";
  std::string product = "CD RECORDER";
  std::string revision = "1.00";
  std::string serial = "0001";
  /// Multiples of 75 blocks a second.
  std::uint32_t speed = 48;
  /// No: a drive that only reads.
  bool writesDiscs = true;
  bool writeGuard = true;
  bool trayStuck = false;
  /// No: nobody may open it.
  bool rights = true;
  /// Answers nothing, until this is no.
  bool hangs = false;
  /// What kind of disc it says is in it; 0: what there is.
  std::uint32_t profile = 0;
  bool speedIsTold = true;
  /// Blocks a second that a write takes at most; 0: as fast as they come.
  std::int32_t pace = 0;
  /// The least blocks of a track.
  std::int32_t shortestTrack = 300;
  /// How long an erase and a closing go on in the background, in milliseconds.
  std::int32_t eraseTime = 0;
  std::int32_t closeTime = 0;
  std::vector<Fault> faults;

  static Settings load(const std::filesystem::path& file);
};

}  // namespace emulated
