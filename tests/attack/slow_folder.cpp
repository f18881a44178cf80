// Loaded before the C library: every look at the folder $SLOW_FOLDER, or at anything below it, takes $SLOW_SECONDS
// longer, and adds a line to the file $SLOW_TOLD: "window" where the window's thread looks, which stands still
// meanwhile, else "aside".
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

bool isSlow(const std::string& place) {
  static const std::string folder = std::getenv("SLOW_FOLDER");
  return place == folder || place.compare(0, folder.size() + 1, folder + "/") == 0;
}

void tell(const char* who) {
  // By its number, since open() is our own here.
  static const auto told = static_cast<int>(
      ::syscall(SYS_openat, AT_FDCWD, std::getenv("SLOW_TOLD"), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  [[maybe_unused]] const auto written = ::write(told, who, std::strlen(who));
}

void delayAt(const char* path) {
  if (path == nullptr || !isSlow(path)) return;
  tell(::gettid() == ::getpid() ? "window\n" : "aside\n");
  ::sleep(static_cast<unsigned>(std::atoi(std::getenv("SLOW_SECONDS"))));
}

template <class Function>
Function real(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

mode_t modeFor(int flags, va_list rest) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = modeFor(flags, rest);
  va_end(rest);
  delayAt(path);
  return real<int (*)(const char*, int, mode_t)>("open")(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = modeFor(flags, rest);
  va_end(rest);
  delayAt(path);
  return real<int (*)(int, const char*, int, mode_t)>("openat")(folder, path, flags, mode);
}

DIR* opendir(const char* path) {
  delayAt(path);
  return real<DIR* (*)(const char*)>("opendir")(path);
}

int stat(const char* path, struct stat* entry) noexcept {
  delayAt(path);
  return real<int (*)(const char*, struct stat*)>("stat")(path, entry);
}

int lstat(const char* path, struct stat* entry) noexcept {
  delayAt(path);
  return real<int (*)(const char*, struct stat*)>("lstat")(path, entry);
}

int fstatat(int folder, const char* path, struct stat* entry, int flags) noexcept {
  delayAt(path);
  return real<int (*)(int, const char*, struct stat*, int)>("fstatat")(folder, path, entry, flags);
}

int statx(int folder, const char* path, int flags, unsigned mask, struct statx* entry) noexcept {
  delayAt(path);
  return real<int (*)(int, const char*, int, unsigned, struct statx*)>("statx")(folder, path, flags, mask, entry);
}

// With offsets of 64 bits everywhere, programs may call any of these by its other name.
int open64(const char*, int, ...) __attribute__((alias("open")));
int openat64(int, const char*, int, ...) __attribute__((alias("openat")));
int stat64(const char*, struct stat64*) noexcept __attribute__((alias("stat")));
int lstat64(const char*, struct stat64*) noexcept __attribute__((alias("lstat")));
int fstatat64(int, const char*, struct stat64*, int) noexcept __attribute__((alias("fstatat")));
}
