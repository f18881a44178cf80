#include "engines/audio/OpenedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace trackloom::engines::audio {

namespace {

FileIdentity identityFrom(const struct stat& status) {
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = status.st_size,
          .modifiedSeconds = status.st_mtim.tv_sec,
          .modifiedNanoseconds = status.st_mtim.tv_nsec};
}

RuntimeError failureOf(const HostPath& path, int number, const std::string& reason) {
  return {number, "The audio file \"" + path.text + "\" can't be read: " + reason};
}

RuntimeError failureOf(const HostPath& path, int systemError) {
  return failureOf(path, RuntimeError::fromErrno(systemError).number(), std::generic_category().message(systemError));
}

}  // namespace

std::optional<FileIdentity> identityOf(const HostPath& path) {
  struct stat status {};
  if (::stat(path.text.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return identityFrom(status);
}

// O_NONBLOCK keeps the opening of a pipe without a writer from waiting; for regular files it means nothing.
OpenedFile::OpenedFile(HostPath path)
    : path_(std::move(path)), descriptor_(::open(path_.text.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)) {
  struct stat status {};
  if (!descriptor_ || ::fstat(descriptor_.get(), &status) != 0) throw failureOf(path_, errno);
  if (!S_ISREG(status.st_mode)) throw failure("it is not a regular file");
  identity_ = identityFrom(status);
}

int OpenedFile::rewoundDescriptor() const {
  if (::lseek(descriptor_.get(), 0, SEEK_SET) != 0) throw failure(errno);
  return descriptor_.get();
}

std::size_t OpenedFile::readAt(std::int64_t offset, std::span<std::uint8_t> bytes) const {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const std::span rest = bytes.subspan(done);
    const ssize_t count =
        ::pread(descriptor_.get(), rest.data(), rest.size(), offset + static_cast<std::int64_t>(done));
    if (count == 0) break;
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      throw failure(errno);
    }
  }
  return done;
}

RuntimeError OpenedFile::failure(const std::string& reason) const {
  return failureOf(path_, RuntimeError::PathFileAccess, reason);
}

RuntimeError OpenedFile::failure(int systemError) const {
  return failureOf(path_, systemError);
}

}  // namespace trackloom::engines::audio
