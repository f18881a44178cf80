#include "engines/ground/SourceFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace trackloom::engines {

namespace {

FileNote::Time timeFrom(const timespec& time) {
  return {.seconds = time.tv_sec, .nanoseconds = time.tv_nsec};
}

FileNote noteFrom(const struct stat& status) {
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = status.st_size,
          .modified = timeFrom(status.st_mtim),
          .changed = timeFrom(status.st_ctim)};
}

}  // namespace

std::optional<FileNote> noteOf(const HostPath& path) {
  struct stat status {};
  if (::stat(path.text.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return noteFrom(status);
}

// O_NONBLOCK keeps the opening of a pipe without a writer from waiting; for regular files it means nothing.
SourceFile::SourceFile(HostPath path)
    : path_(std::move(path)), descriptor_(::open(path_.text.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)) {
  struct stat status {};
  if (!descriptor_ || ::fstat(descriptor_.get(), &status) != 0) throw failure(errno);
  if (!S_ISREG(status.st_mode)) throw failure("not a regular file");
  note_ = noteFrom(status);
}

FileNote SourceFile::presentNote() const {
  struct stat status {};
  if (::fstat(descriptor_.get(), &status) != 0) throw failure(errno);
  return noteFrom(status);
}

std::size_t SourceFile::readAt(std::int64_t offset, std::span<std::uint8_t> bytes) const {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const std::span rest = bytes.subspan(done);
    const ssize_t count = uninterrupted(
        [&] { return ::pread(descriptor_.get(), rest.data(), rest.size(), offset + static_cast<std::int64_t>(done)); });
    if (count == -1) throw failure(errno);
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

}  // namespace trackloom::engines
