#pragma once

#include <memory>
#include <string>

namespace trackloom {

/// Asks the user's session to stay as it is, neither asleep nor ended, while work runs that a pause would spoil.
class Wakefulness {
 public:
  Wakefulness() = default;
  Wakefulness(const Wakefulness&) = delete;
  Wakefulness& operator=(const Wakefulness&) = delete;
  virtual ~Wakefulness() = default;

  /// The request stands for as long as somebody keeps this.
  using Hold = std::shared_ptr<void>;

  /// `why` tells the user what would be spoilt. Neither this call nor the end of the hold ever waits; both may happen
  /// on any thread.
  [[nodiscard]] virtual Hold stayAwake(const std::string& why) = 0;
};

}  // namespace trackloom
