#pragma once

#include <dlfcn.h>

namespace trackloom::fakes {

/// What a function of this name does that a test program has put its own in place of.
template <class Function>
Function* theirs(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace trackloom::fakes
