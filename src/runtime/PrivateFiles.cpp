#include "runtime/PrivateFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "runtime/FileDescriptor.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

constexpr mode_t UserAlone = 0600;
/// Far beyond what the program keeps in a file of its own.
constexpr off_t LargestFile = 1 << 28;

/// The lock tells those who look for such files that this one is not whole yet.
void fill(const FileDescriptor& file, std::string_view bytes) {
  ::flock(file.get(), LOCK_EX | LOCK_NB);
  file.writeAll(bytes);
  if (::fsync(file.get()) != 0) throw RuntimeError::fromErrno(errno);
}

/// The file, once nobody else works at it.
FileDescriptor ownFile(const std::string& path) {
  FileDescriptor file = FileDescriptor::open(path, O_RDONLY | O_NOFOLLOW);
  struct stat entry {};
  if (::fstat(file.get(), &entry) != 0) throw RuntimeError::fromErrno(errno);
  const bool own = S_ISREG(entry.st_mode) && entry.st_uid == ::geteuid();
  if (!own || entry.st_size > LargestFile) throw RuntimeError(RuntimeError::PermissionDenied);
  if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
    throw RuntimeError(RuntimeError::FileAlreadyOpen);
  return file;
}

}  // namespace

bool MakePrivateFile(const HostPath& path, std::string_view bytes) {
  const FileDescriptor file(::open(path.text.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, UserAlone));
  if (!file && errno == EEXIST) return false;
  if (!file) throw RuntimeError::fromFailedMaking(errno);
  try {
    fill(file, bytes);
    syncFolderOf(path.text);
  } catch (const RuntimeError&) {
    ::unlink(path.text.c_str());
    throw;
  }
  return true;
}

bool MovePrivateFile(const HostPath& from, const HostPath& to) {
  const FileDescriptor file = ownFile(from.text);
  if (!MakePrivateFile(to, file.readUpTo(LargestFile))) return false;
  ::unlink(from.text.c_str());
  return true;
}

}  // namespace trackloom
