#pragma once

#include <utility>

#include "controls/Signal.h"

namespace trackloom {

/// A value of a control that its watchers hear about: once for each assignment that changes it.
template <class T>
class Property {
 public:
  Property(const Signal<>& changed, T designed) : changed_(changed), value_(std::move(designed)) {}
  Property(const Property&) = delete;

  Property& operator=(const Property&) = delete;
  Property& operator=(T value) {
    if (value == value_) return *this;
    value_ = std::move(value);
    changed_();
    return *this;
  }

  const T& get() const { return value_; }
  operator const T&() const { return value_; }

  friend bool operator==(const Property& property, const T& value) { return property.value_ == value; }

 private:
  const Signal<>& changed_;
  T value_;
};

}  // namespace trackloom
