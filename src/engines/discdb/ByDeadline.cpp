#include "engines/discdb/ByDeadline.h"

#include <system_error>
#include <thread>

#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

void runAside(std::function<void()> work) {
  try {
    std::thread(std::move(work)).detach();
  } catch (const std::system_error& error) {
    throw RuntimeError(RuntimeError::DeviceIoError, error.what());
  }
}

void awaitUntil(std::chrono::steady_clock::time_point deadline, Patience& patience, const Patience::Wait& ready) {
  using std::chrono::milliseconds;
  bool late = false;
  patience.until([&](milliseconds atMost) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
    if (ready(std::clamp(left, milliseconds(0), atMost))) return true;
    late = left <= milliseconds(0);
    return late;
  });
  if (late) throw RuntimeError(RuntimeError::DeviceIoError, "The disc database has not answered in time");
}

}  // namespace trackloom::engines::discdb
