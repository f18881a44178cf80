#pragma once

#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engines/ripper/RipRequest.h"
#include "runtime/AsideFile.h"

namespace trackloom::engines::ripper {

/// The names that the files of one rip get: each its own, and none outside of its folder.
class RipNames {
 public:
  /// What the track of this path is to be called: a path that an earlier one took gets the first number in brackets
  /// that is free in the rip and in the folder.
  HostPath nameFor(const HostPath& wanted);

 private:
  std::set<HostPath> taken_;
};

/// Throws TrackFailed for a path that no file may have: with a "." or ".." in it, a name that is too long, something
/// else than a file in its place, or one that the user may not write.
void requireNameable(const HostPath& target);

/// A file that a rip makes: aside, in the folder of its target, until it is whole.
class RipFile {
 public:
  /// Throws TrackFailed.
  explicit RipFile(const HostPath& target);

  HostPath path() const { return HostPath(aside_.path()); }
  /// Throws TrackFailed where the disk has not so much room.
  void requireRoom(std::int64_t bytes) const;
  // Both throw TrackFailed.
  void append(std::span<const std::byte> bytes);
  void putAtStart(std::span<const std::byte> bytes);
  /// Returns when all is on the disk. Throws TrackFailed.
  void complete();
  /// Takes its final name, in the place of an older file; of one that this rip has made itself, whatever the folder
  /// takes for one name, the next that is free. The file's place is added to `made`. Throws TrackFailed.
  HostPath takeName(std::set<std::pair<std::uint64_t, std::uint64_t>>& made);

 private:
  HostPath target_;
  AsideFile aside_;
  std::size_t unsynced_ = 0;
};

}  // namespace trackloom::engines::ripper
