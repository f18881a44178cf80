#pragma once

#include <functional>
#include <system_error>
#include <thread>

namespace trackloom {

/// Does work on a thread of its own that nobody ever waits for, since it may ask a disk that never answers. What the
/// work touches must live by itself. False: the system has no thread to spare.
inline bool doAside(std::function<void()> work) {
  try {
    std::thread(std::move(work)).detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

}  // namespace trackloom
