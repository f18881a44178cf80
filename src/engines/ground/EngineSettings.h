#pragma once

#include <cstdint>
#include <string>

#include "engines/ground/Blocks.h"
#include "runtime/Paths.h"

namespace trackloom::engines {

/// The server of the disc database and who asks it.
struct DiscServerSettings {
  std::string host = "gnudb.gnudb.org";
  std::int32_t port = 80;
  /// Where it is empty nothing is sent.
  std::string email;
};

/// What the user may set of the engines, in `Engines.ini` beside the executable. The program itself knows nothing of
/// it.
struct EngineSettings {
  /// Silent blocks between the tracks of an audio disc.
  std::int32_t pause = standardPause;
  /// Every sector of a real write is read back and compared before its success is told.
  bool verify = false;
  bool virtualRecorders = true;
  DiscServerSettings discServer;
  /// Each rip leaves a report with checksums in its folder.
  bool ripLog = false;
};

/// Where the settings lie.
HostPath engineSettingsPath(const HostPath& programFolder);

/// Reads the settings; a key that is missing or makes no sense has its default.
EngineSettings loadEngineSettings(const HostPath& programFolder);

/// By how many samples (pairs of left and right) a drive of this name, "VENDOR PRODUCT", reads too early; 0 where
/// nobody has said so.
std::int32_t readOffsetOf(const HostPath& programFolder, const std::string& drive);

/// Where there is no file of settings, makes one that explains every key. Where that fails nothing is said, since the
/// defaults serve.
void explainEngineSettings(const HostPath& programFolder);

}  // namespace trackloom::engines
