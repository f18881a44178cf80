#pragma once

#include <functional>

#include "runtime/RuntimeError.h"

namespace trackloom::fakes {

/// The number of the error that the call raises; 0: none.
inline int errorNumberOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

}  // namespace trackloom::fakes
