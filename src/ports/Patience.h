#pragma once

#include <chrono>
#include <functional>

namespace trackloom {

/// How the window's thread waits for another thread, within the calls of an engine that give a result. Windows are
/// painted meanwhile, and the window system is answered; no input, no timer and no event of an engine runs.
class Patience {
 public:
  /// Waits at most that long; true: what was waited for has come.
  using Wait = std::function<bool(std::chrono::milliseconds atMost)>;

  Patience() = default;
  Patience(const Patience&) = delete;
  Patience& operator=(const Patience&) = delete;
  virtual ~Patience() = default;

  /// Calls `wait` until it answers true; what it throws comes out. To be called on the window's thread.
  virtual void until(const Wait& wait) = 0;
};

}  // namespace trackloom
