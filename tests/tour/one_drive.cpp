// Loaded before the C library: the table of mounts that the program finds is the file $DRIVES, so that a search of all
// drives walks what the tour has made and nothing of the machine.
#include <dlfcn.h>
#include <fcntl.h>

#include <cstdarg>
#include <cstdlib>
#include <cstring>

extern "C" int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  const bool table = std::strcmp(path, "/proc/self/mountinfo") == 0;
  const auto real = reinterpret_cast<int (*)(const char*, int, mode_t)>(::dlsym(RTLD_NEXT, "open"));
  return real(table ? std::getenv("DRIVES") : path, flags, mode);
}
