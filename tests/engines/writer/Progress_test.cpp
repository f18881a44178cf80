#include "engines/writer/Progress.h"

#include <catch2/catch.hpp>
#include <thread>

namespace trackloom::engines::writer {

using std::chrono::milliseconds;

TEST_CASE("The first block and each quarter of the way are told at once") {
  Progress progress(400);
  for (const int position : {1, 100, 200, 300, 400}) CHECK(progress.due(position));
}

TEST_CASE("Within a quarter progress is told again once fifty milliseconds have passed, and not before") {
  Progress progress(1'000'000);
  constexpr int asked = 1000;
  int told = 0;
  for (int position = 1; position <= asked; ++position) told += progress.due(position) ? 1 : 0;
  // However slow the machine is, not every question is answered by Yes.
  CHECK(told < asked);
  std::this_thread::sleep_for(milliseconds(50));
  CHECK(progress.due(asked));
}

}  // namespace trackloom::engines::writer
