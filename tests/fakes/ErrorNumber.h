#pragma once

#include <functional>

#include "runtime/RuntimeError.h"

namespace trackloom::fakes {

/// The number of the error that the call raises; 0: none.
int errorNumberOf(const std::function<void()>& call);

}  // namespace trackloom::fakes
