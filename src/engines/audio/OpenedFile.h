#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "runtime/FileDescriptor.h"
#include "runtime/Paths.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::audio {

/// What tells one state of a file from another; equal identities mean that what was learned of the file still holds.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;                 ///< bytes
  std::int64_t modifiedSeconds = 0;      ///< since the epoch
  std::int64_t modifiedNanoseconds = 0;  ///< within that second

  bool operator==(const FileIdentity&) const = default;
};

/// The identity of the regular file at `path`; nothing when there is none or it is something else, such as a folder or
/// a pipe.
std::optional<FileIdentity> identityOf(const HostPath& path);

/// A regular file open for reading. A pipe or a device in its place is refused, never waited
/// for.
class OpenedFile {
 public:
  /// Throws RuntimeError when `path` can't be opened or is no regular file.
  explicit OpenedFile(HostPath path);

  const FileIdentity& identity() const { return identity_; }
  std::int64_t size() const { return identity_.size; }

  /// The descriptor, positioned at the file's first byte. It stays this object's own.
  int rewoundDescriptor() const;

  /// Reads from `offset` on; the bytes read, fewer than `bytes` holds only at the file's end. Throws RuntimeError.
  /// Leaves the descriptor's position alone.
  std::size_t readAt(std::int64_t offset, std::span<std::uint8_t> bytes) const;

  /// An error that names this file. The one with `systemError` takes number and reason from that `errno`.
  RuntimeError failure(const std::string& reason) const;
  RuntimeError failure(int systemError) const;

 private:
  HostPath path_;
  FileDescriptor descriptor_;
  FileIdentity identity_;
};

}  // namespace trackloom::engines::audio
