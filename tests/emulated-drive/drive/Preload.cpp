// The C library's calls, as programs find them first: those that concern an emulated drive are answered here, all
// others go on to the library. The names and the shapes are the library's, so this file stands outside the house's own.

#include <dlfcn.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <glob.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Ioctls.h"
#include "Nodes.h"

namespace {

using emulated::Nodes;
using emulated::Reply;
using Sight = emulated::Nodes::Sight;

/// The same call of the library behind this one.
template <class Call>
Call* theirs(const char* name) {
  return reinterpret_cast<Call*>(::dlsym(RTLD_NEXT, name));
}

int give(const Reply& reply) {
  if (reply.result < 0) errno = reply.error;
  return reply.result;
}

int notThere() {
  errno = ENOENT;
  return -1;
}

template <class Call>
int openOr(const char* name, const char* path, int flags, unsigned mode) {
  const Sight sight = Nodes::instance().sightOf(path);
  if (sight == Sight::Drive) return Nodes::instance().open(path, flags);
  if (sight == Sight::Hidden) return notThere();
  return theirs<Call>(name)(path, flags, mode);
}

using Open = int(const char*, int, ...);

unsigned modeFrom(int flags, va_list& rest) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, unsigned) : 0U;
}

/// A block device of the CD-ROM driver.
template <class Stat>
void dress(Stat* status, unsigned number) {
  status->st_mode = S_IFBLK | 0660;
  status->st_rdev = makedev(11, number);
  status->st_size = 0;
}

template <class Stat>
int statNode(const char* path, Stat* status) {
  std::memset(status, 0, sizeof *status);
  status->st_ino = 500 + emulated::numberOf(path);
  status->st_nlink = 1;
  dress(status, emulated::numberOf(path));
  return 0;
}

template <class Stat, class Otherwise>
int statOr(const char* path, Stat* status, Otherwise otherwise) {
  const Sight sight = Nodes::instance().sightOf(path);
  if (sight == Sight::Drive) return statNode(path, status);
  return sight == Sight::Hidden ? notThere() : otherwise();
}

template <class Stat>
int dressOpen(int result, int fd, Stat* status) {
  if (result == 0)
    if (const auto drive = Nodes::instance().driveOf(fd)) dress(status, emulated::numberOf(drive->folder()));
  return result;
}

int copied(int fd, int copy) {
  if (copy >= 0) Nodes::instance().copied(fd, copy);
  return copy;
}

template <class Offset>
Offset seekOr(const char* name, int fd, Offset offset, int whence) {
  const auto call = theirs<Offset(int, Offset, int)>(name);
  const auto drive = whence == SEEK_END ? Nodes::instance().driveOf(fd) : nullptr;
  if (!drive) return call(fd, offset, whence);
  return call(fd, static_cast<Offset>(emulated::dataBytes(*drive)) + offset, SEEK_SET);
}

template <class Glob, class Call>
int globOr(const char* name, const char* pattern, int flags, int (*failed)(const char*, int), Glob* found) {
  const auto call = theirs<Call>(name);
  int result = call(pattern, flags, failed, found);
  for (const std::string& path : Nodes::instance().paths()) {
    if (::fnmatch(pattern, path.c_str(), FNM_PATHNAME) != 0) continue;
    const int append = result == 0 ? GLOB_APPEND : 0;
    result = call(path.c_str(), (flags & ~GLOB_APPEND) | append | GLOB_NOCHECK, failed, found);
  }
  return result;
}

/// Where the kernel lists its drives.
std::FILE* listOfDrives() {
  std::string text = "CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\ndrive name:\t";
  for (const std::string& path : Nodes::instance().paths()) text += "\t" + path.substr(5);
  text += "\n";
  std::FILE* file = std::tmpfile();
  std::fputs(text.c_str(), file);
  std::rewind(file);
  return file;
}

std::FILE* openStreamOr(const char* name, const char* path, const char* mode) {
  const bool list = path != nullptr && std::strcmp(path, "/proc/sys/dev/cdrom/info") == 0;
  if (list && std::getenv("EMULATED_DRIVES") != nullptr) return listOfDrives();
  return theirs<std::FILE*(const char*, const char*)>(name)(path, mode);
}

/// By how much the naps of hosts, which wait for what a real drive needs, are divided.
unsigned haste() {
  const char* text = std::getenv("EMULATED_HASTE");
  return text == nullptr ? 1U : std::max(1U, static_cast<unsigned>(std::atoi(text)));
}

}  // namespace

extern "C" {

int usleep(useconds_t microseconds) {
  return theirs<int(useconds_t)>("usleep")(microseconds / haste());
}

unsigned sleep(unsigned seconds) {
  if (haste() == 1) return theirs<unsigned(unsigned)>("sleep")(seconds);
  usleep(seconds * 1000000);
  return 0;
}

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const unsigned mode = modeFrom(flags, rest);
  va_end(rest);
  return openOr<Open>("open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const unsigned mode = modeFrom(flags, rest);
  va_end(rest);
  return openOr<Open>("open64", path, flags, mode);
}

int __open_2(const char* path, int flags) {
  return openOr<Open>("open", path, flags, 0);
}

int __open64_2(const char* path, int flags) {
  return openOr<Open>("open64", path, flags, 0);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const unsigned mode = modeFrom(flags, rest);
  va_end(rest);
  const Sight sight = Nodes::instance().sightOf(path);
  if (sight == Sight::Drive) return Nodes::instance().open(path, flags);
  if (sight == Sight::Hidden) return notThere();
  return theirs<int(int, const char*, int, ...)>("openat")(folder, path, flags, mode);
}

int close(int fd) {
  Nodes::instance().closed(fd);
  return theirs<int(int)>("close")(fd);
}

int dup(int fd) noexcept {
  return copied(fd, theirs<int(int)>("dup")(fd));
}

int dup2(int fd, int copy) noexcept {
  return copied(fd, theirs<int(int, int)>("dup2")(fd, copy));
}

int ioctl(int fd, unsigned long request, ...) noexcept {
  va_list rest;
  va_start(rest, request);
  void* argument = va_arg(rest, void*);
  va_end(rest);
  if (const auto drive = Nodes::instance().driveOf(fd)) return give(emulated::control(*drive, request, argument));
  return theirs<int(int, unsigned long, ...)>("ioctl")(fd, request, argument);
}

ssize_t read(int fd, void* buffer, size_t size) {
  const auto drive = Nodes::instance().driveOf(fd);
  if (!drive) return theirs<ssize_t(int, void*, size_t)>("read")(fd, buffer, size);
  const int done = give(emulated::readData(*drive, buffer, size, ::lseek(fd, 0, SEEK_CUR)));
  if (done > 0) ::lseek(fd, done, SEEK_CUR);
  return done;
}

ssize_t __read_chk(int fd, void* buffer, size_t size, size_t) {
  return read(fd, buffer, size);
}

ssize_t pread(int fd, void* buffer, size_t size, off_t offset) {
  if (const auto drive = Nodes::instance().driveOf(fd)) return give(emulated::readData(*drive, buffer, size, offset));
  return theirs<ssize_t(int, void*, size_t, off_t)>("pread")(fd, buffer, size, offset);
}

ssize_t pread64(int fd, void* buffer, size_t size, off64_t offset) {
  return pread(fd, buffer, size, offset);
}

off_t lseek(int fd, off_t offset, int whence) noexcept {
  return seekOr("lseek", fd, offset, whence);
}

off64_t lseek64(int fd, off64_t offset, int whence) noexcept {
  return seekOr("lseek64", fd, offset, whence);
}

int stat(const char* path, struct stat* status) noexcept {
  return statOr(path, status, [&] { return theirs<int(const char*, struct stat*)>("stat")(path, status); });
}

int stat64(const char* path, struct stat64* status) noexcept {
  return statOr(path, status, [&] { return theirs<int(const char*, struct stat64*)>("stat64")(path, status); });
}

int lstat(const char* path, struct stat* status) noexcept {
  return statOr(path, status, [&] { return theirs<int(const char*, struct stat*)>("lstat")(path, status); });
}

int lstat64(const char* path, struct stat64* status) noexcept {
  return statOr(path, status, [&] { return theirs<int(const char*, struct stat64*)>("lstat64")(path, status); });
}

int __xstat(int version, const char* path, struct stat* status) {
  return statOr(path, status,
                [&] { return theirs<int(int, const char*, struct stat*)>("__xstat")(version, path, status); });
}

int __lxstat(int version, const char* path, struct stat* status) {
  return statOr(path, status,
                [&] { return theirs<int(int, const char*, struct stat*)>("__lxstat")(version, path, status); });
}

int fstat(int fd, struct stat* status) noexcept {
  return dressOpen(theirs<int(int, struct stat*)>("fstat")(fd, status), fd, status);
}

int fstat64(int fd, struct stat64* status) noexcept {
  return dressOpen(theirs<int(int, struct stat64*)>("fstat64")(fd, status), fd, status);
}

int __fxstat(int version, int fd, struct stat* status) {
  return dressOpen(theirs<int(int, int, struct stat*)>("__fxstat")(version, fd, status), fd, status);
}

int access(const char* path, int mode) noexcept {
  const Sight sight = Nodes::instance().sightOf(path);
  if (sight == Sight::Drive) return 0;
  return sight == Sight::Hidden ? notThere() : theirs<int(const char*, int)>("access")(path, mode);
}

ssize_t readlink(const char* path, char* buffer, size_t size) noexcept {
  if (Nodes::instance().sightOf(path) == Sight::Other)
    return theirs<ssize_t(const char*, char*, size_t)>("readlink")(path, buffer, size);
  errno = EINVAL;
  return -1;
}

char* realpath(const char* path, char* resolved) noexcept {
  if (Nodes::instance().sightOf(path) != Sight::Drive)
    return theirs<char*(const char*, char*)>("realpath")(path, resolved);
  return resolved == nullptr ? ::strdup(path) : std::strcpy(resolved, path);
}

char* __realpath_chk(const char* path, char* resolved, size_t) {
  return realpath(path, resolved);
}

int glob(const char* pattern, int flags, int (*failed)(const char*, int), glob_t* found) noexcept {
  return globOr<glob_t, int(const char*, int, int (*)(const char*, int), glob_t*)>("glob", pattern, flags, failed,
                                                                                   found);
}

int glob64(const char* pattern, int flags, int (*failed)(const char*, int), glob64_t* found) noexcept {
  return globOr<glob64_t, int(const char*, int, int (*)(const char*, int), glob64_t*)>("glob64", pattern, flags, failed,
                                                                                       found);
}

std::FILE* fopen(const char* path, const char* mode) {
  return openStreamOr("fopen", path, mode);
}

std::FILE* fopen64(const char* path, const char* mode) {
  return openStreamOr("fopen64", path, mode);
}

}  // extern "C"
