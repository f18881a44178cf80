#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "engines/ground/EngineError.h"
#include "runtime/FileDescriptor.h"
#include "runtime/Paths.h"

namespace trackloom::engines {

/// What the system tells of the state of a file at one moment.
struct FileNote {
  /// Since the epoch.
  struct Time {
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;

    auto operator<=>(const Time&) const = default;
  };

  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;  ///< bytes
  Time modified;
  Time changed;  ///< by anything, also by a rename, a link, or whoever puts the time of modification back

  /// Equal notes mean that what was learned of the file still holds.
  bool operator==(const FileNote&) const = default;
  /// The content may still be the same: what differs may come from other names or rights, or from a file system whose
  /// inodes do not last.
  bool mayBeContentOf(const FileNote& other) const {
    return device == other.device && size == other.size && modified == other.modified;
  }
};

/// The regular file at `path`; nothing when there is none or it is something else, such as a folder or a pipe.
std::optional<FileNote> noteOf(const HostPath& path);

/// A regular file open for reading. A pipe or a device in its place is refused, never waited for.
class SourceFile {
 public:
  /// Throws EngineError when `path` can't be opened or is no regular file.
  explicit SourceFile(HostPath path);

  const HostPath& path() const { return path_; }
  /// As it was when it was opened.
  const FileNote& note() const { return note_; }
  std::int64_t size() const { return note_.size; }
  /// As it is now, whatever has become of its name.
  FileNote presentNote() const;

  /// Reads from `offset` on; the bytes read, fewer than `bytes` holds only at the file's end. Throws EngineError.
  std::size_t readAt(std::int64_t offset, std::span<std::uint8_t> bytes) const;

  /// An error that names this file.
  EngineError failure(std::string_view why) const { return fileError(path_, why); }
  EngineError failure(int systemError) const { return fileError(path_, systemError); }

 private:
  HostPath path_;
  FileDescriptor descriptor_;
  FileNote note_;
};

}  // namespace trackloom::engines
