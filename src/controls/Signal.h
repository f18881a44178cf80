#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace trackloom {

/// Keeps a listener listening; dropping it ends that.
using Connection = std::shared_ptr<void>;

/// Tells any number of listeners. A listener may leave, and the signal may die, while it is being told.
template <class... Args>
class Signal {
 public:
  using Listener = std::function<void(Args...)>;

  [[nodiscard]] Connection connect(Listener listener) {
    auto held = std::make_shared<Listener>(std::move(listener));
    std::erase_if(listeners_, [](const auto& weak) { return weak.expired(); });
    listeners_.push_back(held);
    return held;
  }

  void operator()(Args... args) const {
    const auto now = listeners_;
    for (const auto& weak : now)
      if (const auto listener = weak.lock()) (*listener)(args...);
  }

 private:
  std::vector<std::weak_ptr<Listener>> listeners_;
};

}  // namespace trackloom
