#pragma once

#include <map>
#include <string>
#include <vector>

#include "engines/ripper/Checksums.h"
#include "engines/ripper/RipRequest.h"

namespace trackloom::engines::ripper {

/// A track as the rip has left it.
struct RippedTrack {
  RipTrack track;
  /// Empty: it is not whole.
  HostPath file;
  /// A code of RipStatus, or `status::whole`.
  std::int32_t code = 0;
  Checksums sums;
  /// What the drive met, by code of RipStatus: how often.
  std::map<std::int32_t, int> troubles;
};

/// What stands above the tracks of a report.
struct RipFacts {
  std::string drive;
  /// Its name and version, where one is used.
  std::string encoder;
  std::string date;
};

/// The report of a rip, in lines: drive, offset, encoder, and of each track its checksums, what was met, and how it
/// ended.
std::string ripReport(const RipRequest& request, const RipFacts& facts, const std::vector<RippedTrack>& tracks);

/// Adds the report to `Rip.log` in the folder of the rip's first file; in silence where that fails.
void addToRipLog(const std::string& report, const std::vector<RippedTrack>& tracks);

}  // namespace trackloom::engines::ripper
