#include "engines/discdb/DiscId.h"

#include <catch2/catch.hpp>
#include <numeric>

#include "engines/discdb/RealDiscs.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

namespace {

/// Tracks of one block each from that block on.
DiscContents tracksFrom(std::int32_t first, std::size_t count) {
  DiscContents disc;
  disc.starts.resize(count);
  std::iota(disc.starts.begin(), disc.starts.end(), first);
  disc.leadOut = first + static_cast<std::int32_t>(count);
  return disc;
}

}  // namespace

TEST_CASE("Discs that were sold have the ids under which they are filed") {
  CHECK(discId(audioDisc()) == "940aac0d");
  CHECK(discId(enhancedDisc()) == "9e11600b");
  CHECK(discId(mixedDisc()) == "af0da31d");
}

TEST_CASE("An id keeps its eight digits, and the sum of digits is taken without its multiples of 255") {
  // Block 0 is second 2 of the disc, block 600 second 10: 2 by digits, 8 seconds long.
  CHECK(discId({{0}, 600, {}}) == "02000801");
  // Ninety-nine tracks, each a block, of which 75 lie in second 2 and 24 in second 3: 222.
  CHECK(discId(tracksFrom(0, 99)) == "de000163");
  // All in second 999, digits of 27 each: 27 x 75 + 24 x 1 = 2049, and 2049 = 8 x 255 + 9.
  CHECK(discId(tracksFrom(999 * 75 - 150, 99)) == "09000163");
  // A track that begins behind second 2 shortens the disc, and both ends are cut to whole seconds.
  CHECK(discId({{74}, 75, {}}) == "02000101");
  CHECK(discId({{75}, 149, {}}) == "03000001");
}

TEST_CASE("The question counts from the lead-in and ends with the length of the disc in seconds") {
  CHECK(
      queryCommand(audioDisc()) ==
      "cddb query 940aac0d 13 150 15239 29625 45763 61420 75862 91642 108918 123698 139895 153589 169239 188495 2734");
  CHECK(queryCommand({{0}, 600, {}}) == "cddb query 02000801 1 150 10");
  CHECK(queryCommand({{75}, 149, {}}) == "cddb query 03000001 1 225 3");
}

TEST_CASE("Contents that no disc can have get no id") {
  const std::vector<DiscContents> impossible{
      {{}, 600, {}},         {{-1}, 600, {}},   {{600}, 600, {}},   {{300, 300}, 600, {}},
      {{300, 200}, 600, {}}, {{0}, 449850, {}}, tracksFrom(0, 100),
  };
  for (const DiscContents& disc : impossible) {
    CHECK_THROWS_AS(discId(disc), RuntimeError);
    CHECK_THROWS_AS(queryCommand(disc), RuntimeError);
  }
  CHECK(discId({{0}, 449849, {}}) == "02176d01");
}

}  // namespace trackloom::engines::discdb
