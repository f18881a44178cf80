#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>

namespace trackloom {

/// What this program asks of its system passes by here, for tests that watch a call or answer it in the system's place.
struct SystemCalls {
  /// Told before each such call.
  std::function<void(int descriptor)> onFsync, onFlock;
  /// Answer instead of the system; a file is closed whatever the answer.
  std::function<int(int descriptor)> fsync, flock, close;
  std::function<ssize_t(int descriptor, const void* bytes, std::size_t length)> write;
  std::function<ssize_t(int descriptor, void* bytes, std::size_t length)> read;
};
SystemCalls& systemCalls();

/// The result of a failed call, which leaves the error behind.
ssize_t failed(int error);

/// The system's own answers.
ssize_t written(int descriptor, const void* bytes, std::size_t length);
ssize_t got(int descriptor, void* bytes, std::size_t length);

}  // namespace trackloom
