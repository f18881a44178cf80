#include "runtime/FileDescriptor.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "runtime/Paths.h"
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

std::string FileDescriptor::readUpTo(std::size_t length) const {
  std::array<char, 4096> buffer;
  std::string bytes;
  while (bytes.size() < length) {
    const ssize_t got = ::read(descriptor_, buffer.data(), std::min(buffer.size(), length - bytes.size()));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw RuntimeError::fromErrno(errno);
    if (got == 0) break;
    bytes.append(buffer.data(), static_cast<std::size_t>(got));
  }
  return bytes;
}

void syncFolderOf(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind(HostSep) + 1);
  const FileDescriptor opened(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened && ::fsync(opened.get()) != 0 && errno == EIO) throw RuntimeError::fromErrno(errno);
}

}  // namespace trackloom
