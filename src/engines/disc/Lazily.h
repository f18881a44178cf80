#pragma once

#include <functional>
#include <optional>
#include <utility>

namespace trackloom::engines {

/// A value that is made when it is first asked for. Used by one thread.
template <class Value>
class Lazily {
 public:
  Lazily(Value value) : value_(std::move(value)) {}
  explicit Lazily(std::function<Value()> make) : make_(std::move(make)) {}

  Value& operator*() const {
    if (!value_) value_ = std::exchange(make_, nullptr)();
    return *value_;
  }
  Value* operator->() const { return &**this; }

 private:
  mutable std::function<Value()> make_;
  mutable std::optional<Value> value_;
};

}  // namespace trackloom::engines
