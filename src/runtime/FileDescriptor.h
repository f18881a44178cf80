#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace trackloom {

/// Owns one open file or folder of the system; below 0: none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { close(); }

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }
  /// Somebody else closes it from now on.
  int release() { return std::exchange(descriptor_, -1); }

  /// Opens a file for one who never waits, as a pipe in the place of a file would have it; a file that the flags make
  /// has what the user's mask leaves of `permissions`. Throws RuntimeError.
  static FileDescriptor open(const std::string& path, int flags, mode_t permissions = 0666);

  // Both throw RuntimeError.
  void writeAll(std::string_view bytes) const;
  /// What follows from here to the end of the file, at most `length` bytes.
  std::string readUpTo(std::size_t length) const;

  /// False, with errno: the system could not close it, and what was written may be lost.
  bool close() { return descriptor_ < 0 || ::close(std::exchange(descriptor_, -1)) == 0; }

 private:
  int descriptor_ = -1;
};

/// What a call of the system gives that is made again after each interruption; -1 with errno: it failed otherwise.
template <class Call>
ssize_t uninterrupted(const Call& call) {
  ssize_t result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

/// Returns when the names in the file's folder are on the disk. Some file systems cannot tell, which is no fault of the
/// file. Throws RuntimeError.
void syncFolderOf(const std::string& path);

}  // namespace trackloom
