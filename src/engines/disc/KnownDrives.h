#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "engines/disc/Recorder.h"
#include "runtime/Paths.h"

namespace trackloom::engines {

/// A drive that this program has seen, with the texts it had then.
struct KnownDrive {
  std::string id;
  std::string vendor;
  std::string product;
  /// It records nothing, and so has a letter, but no number among the recorders.
  bool readsOnly = false;

  bool operator==(const KnownDrive&) const = default;
};

/// The drives in the order in which they were first seen, which is that of their letters, from the section "drives" of
/// Engines.ini.
std::vector<KnownDrive> loadKnownDrives(const HostPath& programFolder);
/// Puts the section in place of the one there is, and leaves all else of the file as it stands. Where that fails
/// nothing is said, since the next start finds the drives anyway.
void saveKnownDrives(const HostPath& programFolder, const std::vector<KnownDrive>& drives);

/// What these recorders now tell.
std::vector<KnownDrive> asKnown(const RecorderList& present);
/// The known ones with what is now told of them, and new ones behind them.
std::vector<KnownDrive> withPresent(std::vector<KnownDrive> known, const std::vector<KnownDrive>& present);

/// The recorders in the order of their numbers, and the place of each among all drives.
struct PlacedRecorders {
  PlacedRecorders() = default;
  /// Of a machine that has no other drives.
  PlacedRecorders(RecorderList all);

  RecorderList recorders;
  std::vector<std::size_t> places;
};

/// The place of a drive that is not connected: it can be selected, says so behind its product, and has no disc.
std::shared_ptr<Recorder> absentRecorder(const KnownDrive& drive);
/// A recorder for each known one, since the program remembers a drive by its number; an absent one where it is not
/// among these. Nothing where none is.
PlacedRecorders inKnownOrder(const std::vector<KnownDrive>& known, const RecorderList& present);

}  // namespace trackloom::engines
