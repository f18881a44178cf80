#include "runtime/SystemCalls.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace trackloom {

SystemCalls& systemCalls() {
  static SystemCalls calls;
  return calls;
}

ssize_t failed(int error) {
  errno = error;
  return -1;
}

ssize_t written(int descriptor, const void* bytes, std::size_t length) {
  return ::syscall(SYS_write, descriptor, bytes, length);
}

ssize_t got(int descriptor, void* bytes, std::size_t length) {
  return ::syscall(SYS_read, descriptor, bytes, length);
}

}  // namespace trackloom

using trackloom::systemCalls;

// The linker takes these for the C library's.

extern "C" int fsync(int descriptor) {
  if (systemCalls().onFsync) systemCalls().onFsync(descriptor);
  return systemCalls().fsync ? systemCalls().fsync(descriptor) : static_cast<int>(::syscall(SYS_fsync, descriptor));
}

extern "C" int flock(int descriptor, int operation) {
  if (systemCalls().onFlock) systemCalls().onFlock(descriptor);
  return systemCalls().flock ? systemCalls().flock(descriptor)
                             : static_cast<int>(::syscall(SYS_flock, descriptor, operation));
}

extern "C" int close(int descriptor) {
  const int result = static_cast<int>(::syscall(SYS_close, descriptor));
  return systemCalls().close ? systemCalls().close(descriptor) : result;
}

extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t length) {
  return systemCalls().write ? systemCalls().write(descriptor, bytes, length)
                             : trackloom::written(descriptor, bytes, length);
}

extern "C" ssize_t read(int descriptor, void* bytes, std::size_t length) {
  return systemCalls().read ? systemCalls().read(descriptor, bytes, length) : trackloom::got(descriptor, bytes, length);
}
