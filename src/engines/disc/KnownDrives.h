#pragma once

#include <string>
#include <vector>

#include "engines/disc/Recorder.h"
#include "runtime/Paths.h"

namespace trackloom::engines {

/// A recorder that this program has seen, with the texts it had then.
struct KnownDrive {
  std::string id;
  std::string vendor;
  std::string product;

  bool operator==(const KnownDrive&) const = default;
};

/// The recorders in the order in which they were first seen, from the section "drives" of Engines.ini.
std::vector<KnownDrive> loadKnownDrives(const HostPath& programFolder);
/// Puts the section in place of the one there is, and leaves all else of the file as it stands. Where that fails
/// nothing is said, since the next start finds the recorders anyway.
void saveKnownDrives(const HostPath& programFolder, const std::vector<KnownDrive>& drives);

/// The known ones with what these recorders now tell, and new ones behind them.
std::vector<KnownDrive> withPresent(std::vector<KnownDrive> known, const RecorderList& present);
/// A recorder for each known drive, since the program remembers a drive by its number. One that is absent can be
/// selected, says so behind its product, and has no disc. Nothing where none is present.
RecorderList inKnownOrder(const std::vector<KnownDrive>& known, const RecorderList& present);

}  // namespace trackloom::engines
