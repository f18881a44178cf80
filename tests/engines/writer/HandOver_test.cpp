#include "engines/writer/HandOver.h"

#include <catch2/catch.hpp>

namespace trackloom::engines::writer {

TEST_CASE("What is done for a write is done until nothing is wanted any more") {
  HandOver handOver;
  int done = 0;
  handOver.unlessAbandoned([&] { ++done; });
  CHECK(done == 1);
  handOver.abandon();
  handOver.unlessAbandoned([&] { ++done; });
  CHECK(done == 1);
}

}  // namespace trackloom::engines::writer
