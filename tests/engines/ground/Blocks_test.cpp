#include "engines/ground/Blocks.h"

#include <catch2/catch.hpp>
#include <limits>

namespace trackloom::engines {

TEST_CASE("Blocks become bytes by the sector of their kind and stop at what 32 bits hold") {
  CHECK(bytesOfBlocks(1, AudioBlocks) == 2352);
  CHECK(bytesOfBlocks(1, DataBlocks) == 2048);
  CHECK(bytesOfBlocks(913044, AudioBlocks) == 2147479488);
  CHECK(bytesOfBlocks(913045, AudioBlocks) == 2147481840);
  CHECK(bytesOfBlocks(913046, AudioBlocks) == 2147483647);
  CHECK(bytesOfBlocks(1048575, DataBlocks) == 2147481600);
  CHECK(bytesOfBlocks(1048576, DataBlocks) == 2147483647);
  CHECK(bytesOfBlocks(std::numeric_limits<std::int32_t>::max(), AudioBlocks) == 2147483647);
}

TEST_CASE("Less than no blocks are no bytes and no time") {
  CHECK(bytesOfBlocks(-1, AudioBlocks) == 0);
  CHECK(bytesOfBlocks(std::numeric_limits<std::int32_t>::min(), DataBlocks) == 0);
  CHECK(timeOfBlocks(std::numeric_limits<std::int32_t>::min()) == "00:00:00");
}

TEST_CASE("A time counts minutes, seconds and frames of which 75 make a second") {
  CHECK(timeOfBlocks(1) == "00:00:01");
  CHECK(timeOfBlocks(74) == "00:00:74");
  CHECK(timeOfBlocks(75) == "00:01:00");
  CHECK(timeOfBlocks(4499) == "00:59:74");
  CHECK(timeOfBlocks(4500) == "01:00:00");
  CHECK(timeOfBlocks(359849) == "79:57:74");
  CHECK(timeOfBlocks(std::numeric_limits<std::int32_t>::max()) == "477218:35:22");
}

}  // namespace trackloom::engines
