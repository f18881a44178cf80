#include "fakes/ErrorNumber.h"

namespace trackloom::fakes {

int errorNumberOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

}  // namespace trackloom::fakes
