#include "engines/writer/PieceSource.h"

#include <catch2/catch.hpp>
#include <fstream>

namespace trackloom::engines::writer {

namespace {

/// Pages of memory that the process has asked the system for (proc(5), statm).
std::size_t pagesAsked() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages;
}

/// Far more than anything else of these tests, and never touched.
constexpr std::size_t large = std::size_t{1} << 30;
constexpr std::size_t half = large / 4096 / 2;

}  // namespace

TEST_CASE("The memory of a piece serves the next one, and the last one's goes back to the system") {
  const std::size_t before = pagesAsked();
  {
    const auto memory = std::make_shared<PieceMemory>(large);
    const std::byte* const first = Piece(large, memory).data();
    Piece second(large, memory);
    CHECK(second.data() == first);
    CHECK(pagesAsked() > before + half);
    CHECK(pagesAsked() < before + 3 * half);
  }
  CHECK(pagesAsked() < before + half);
}

TEST_CASE("A piece outlives all others that hold its memory") {
  auto memory = std::make_shared<PieceMemory>(64);
  Piece piece(64, std::move(memory));
  piece.bytes().back() = std::byte{7};
  CHECK(piece.bytes().back() == std::byte{7});
}

}  // namespace trackloom::engines::writer
