#include "fakes/FakePatience.h"

#include <chrono>

namespace trackloom::fakes {

FakePatience::~FakePatience() = default;

void FakePatience::until(const Wait& wait) {
  ++waits;
  while (!wait(std::chrono::milliseconds(1)))
    if (meanwhile) meanwhile();
}

}  // namespace trackloom::fakes
