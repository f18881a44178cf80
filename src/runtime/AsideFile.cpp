#include "runtime/AsideFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "runtime/Paths.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

constexpr mode_t Permissions = 0777;

std::string folderOf(const std::string& path) {
  return path.substr(0, path.rfind(HostSep) + 1);
}

/// Short, so that the longest name that a folder takes can be replaced too.
std::string asideName(const std::string& target, const AsideNames& names, int number) {
  return folderOf(target) + names.stem + std::to_string(number);
}

bool isCalled(const FileDescriptor& file, const std::string& name) {
  struct stat opened {
  }, named{};
  return ::fstat(file.get(), &opened) == 0 && ::lstat(name.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
         opened.st_ino == named.st_ino;
}

/// Between the making of a file and its lock another program can take it for left over. Where the file system knows no
/// locks, nobody does.
bool isTakenAway(const FileDescriptor& file, const std::string& name) {
  if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) return errno == EWOULDBLOCK;
  return !isCalled(file, name);
}

/// Removes a file whose writer has gone. One that cannot be locked is being written, and others' files are left alone.
void removeLeftOver(const std::string& name) {
  const FileDescriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
  struct stat entry {};
  if (!file || ::fstat(file.get(), &entry) != 0 || !S_ISREG(entry.st_mode) || entry.st_uid != ::geteuid()) return;
  const bool locked = ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
  if (locked && isCalled(file, name)) ::unlink(name.c_str());
}

}  // namespace

AsideFile::AsideFile(std::string target, AsideNames names) : target_(std::move(target)) {
  for (int number = 1; number <= names.most; ++number) removeLeftOver(asideName(target_, names, number));
  for (int number = 1; number <= names.most; ++number)
    if (open(asideName(target_, names, number))) return;
  throw RuntimeError(RuntimeError::PathFileAccess);
}

AsideFile::~AsideFile() {
  // Whoever has removed it may have given its name to another.
  if (!name_.empty() && isCalled(file_, name_)) ::unlink(name_.c_str());
}

/// False: the name is another program's.
bool AsideFile::open(const std::string& name) {
  struct stat old {};
  const bool replaces = ::stat(target_.c_str(), &old) == 0;
  const mode_t permissions = replaces ? old.st_mode & Permissions : 0666;
  FileDescriptor file(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions));
  if (!file && errno == EEXIST) return false;
  if (!file) throw RuntimeError::fromFailedMaking(errno);
  if (isTakenAway(file, name)) return false;
  if (replaces) ::fchmod(file.get(), permissions);
  name_ = name;
  file_ = std::move(file);
  return true;
}

void AsideFile::write(std::string_view bytes) {
  file_.writeAll(bytes);
}

void AsideFile::writeAtStart(std::string_view bytes) {
  if (::lseek(file_.get(), 0, SEEK_SET) != 0) throw RuntimeError::fromErrno(errno);
  file_.writeAll(bytes);
  if (::lseek(file_.get(), 0, SEEK_END) < 0) throw RuntimeError::fromErrno(errno);
}

void AsideFile::startSync() {
  ::sync_file_range(file_.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
}

void AsideFile::sync() {
  if (::fsync(file_.get()) != 0) throw RuntimeError::fromErrno(errno);
}

void AsideFile::takePlace() {
  sync();
  if (std::rename(name_.c_str(), target_.c_str()) != 0) throw RuntimeError::fromErrno(errno);
  name_.clear();
  syncFolderOf(target_);
}

}  // namespace trackloom
