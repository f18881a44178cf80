#include "runtime/FileDescriptor.h"

#include <fcntl.h>

#include <cerrno>

#include "runtime/RuntimeError.h"

namespace trackloom {

FileDescriptor FileDescriptor::open(const std::string& path, int flags, mode_t permissions) {
  FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, permissions));
  if (file) return file;
  throw(flags & O_CREAT) != 0 ? RuntimeError::fromFailedMaking(errno) : RuntimeError::fromErrno(errno);
}

void FileDescriptor::writeAll(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) throw RuntimeError::fromErrno(errno);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace trackloom
