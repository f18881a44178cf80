#pragma once

#include <memory>
#include <utility>

namespace trackloom {

/// Makes an object of the toolkit that its parent owns and destroys.
template <class T, class Parent, class... Args>
T& make(Parent& parent, Args&&... args) {
  return *std::make_unique<T>(std::forward<Args>(args)..., &parent).release();
}

}  // namespace trackloom
