#include "runtime/FileDescriptor.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "runtime/Paths.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

/// How far a call of the system came.
template <class Call>
std::size_t completed(const Call& call) {
  const ssize_t result = uninterrupted(call);
  if (result == -1) throw RuntimeError::fromErrno(errno);
  return static_cast<std::size_t>(result);
}

}  // namespace

FileDescriptor FileDescriptor::open(const std::string& path, int flags, mode_t permissions) {
  FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, permissions));
  if (file) return file;
  throw(flags & O_CREAT) != 0 ? RuntimeError::fromFailedMaking(errno) : RuntimeError::fromErrno(errno);
}

void FileDescriptor::writeAll(std::string_view bytes) const {
  while (!bytes.empty())
    bytes.remove_prefix(completed([&] { return ::write(descriptor_, bytes.data(), bytes.size()); }));
}

std::string FileDescriptor::readUpTo(std::size_t length) const {
  std::array<char, 4096> buffer;
  std::string bytes;
  std::size_t got{};
  do {
    got = completed([&] { return ::read(descriptor_, buffer.data(), std::min(buffer.size(), length - bytes.size())); });
    bytes.append(buffer.data(), got);
  } while (got != 0);
  return bytes;
}

void syncFolderOf(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind(HostSep) + 1);
  const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened && ::fsync(opened.get()) != 0 && errno == EIO) throw RuntimeError::fromErrno(errno);
}

}  // namespace trackloom
