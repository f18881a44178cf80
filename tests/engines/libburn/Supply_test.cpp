#include "engines/libburn/Supply.h"

#include <catch2/catch.hpp>
#include <future>
#include <thread>

namespace trackloom::engines::libburn {

namespace {

using Bytes = std::vector<std::byte>;
using std::chrono::hours;
using std::chrono::milliseconds;

Bytes bytesFrom(int first, int count) {
  Bytes bytes;
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::byte>(first + i));
  return bytes;
}

/// Takes so many bytes for a track on a thread of its own, once somebody waits to be asked.
std::future<std::pair<bool, Bytes>> taken(Supply& supply, std::int16_t track, std::size_t size) {
  return std::async(std::launch::async, [&supply, track, size] {
    std::this_thread::sleep_for(milliseconds(20));
    Bytes bytes(size);
    const bool more = supply.take(track, bytes.data(), size);
    return std::pair(more, bytes);
  });
}

}  // namespace

TEST_CASE("What is asked for is made piece by piece, and what is left over is there for the next one who asks") {
  Supply supply;
  CHECK(supply.drained());
  auto first = taken(supply, 3, 10);
  int next = 1;
  for (const int size : {3, 5, 4}) {
    supply.serve(hours(1), [&](std::int16_t track) {
      CHECK(track == 3);
      return bytesFrom(std::exchange(next, next + size), size);
    });
  }
  CHECK(first.get() == std::pair(true, bytesFrom(1, 10)));
  CHECK_FALSE(supply.drained());
  CHECK(taken(supply, 3, 2).get() == std::pair(true, bytesFrom(11, 2)));
  CHECK(supply.drained());
}

TEST_CASE("Nothing is made that nobody asks for") {
  Supply supply;
  bool made = false;
  const auto make = [&](std::int16_t) {
    made = true;
    return bytesFrom(1, 1);
  };
  supply.serve(milliseconds(1), make);
  CHECK_FALSE(made);
  auto one = taken(supply, 1, 1);
  supply.serve(hours(1), make);
  CHECK(one.get() == std::pair(true, bytesFrom(1, 1)));
  CHECK(std::exchange(made, false));
  supply.serve(milliseconds(1), make);
  CHECK_FALSE(made);
}

TEST_CASE("Who waits for bytes when there will be none hears of it, and so does whoever asks later") {
  Supply supply;
  auto waiting = taken(supply, 2, 4);
  supply.serve(hours(1), [](std::int16_t) { return bytesFrom(1, 2); });
  std::this_thread::sleep_for(milliseconds(20));
  supply.end();
  CHECK_FALSE(waiting.get().first);
  CHECK_FALSE(supply.take(2, nullptr, 0));
  Bytes byte(1);
  CHECK_FALSE(supply.take(2, byte.data(), 1));
}

TEST_CASE("No bytes are had at once") {
  Supply supply;
  CHECK(supply.take(1, nullptr, 0));
}

TEST_CASE("Bytes that lie ready count for nothing once there will be no more") {
  Supply supply;
  auto one = taken(supply, 1, 1);
  supply.serve(hours(1), [](std::int16_t) { return bytesFrom(1, 2); });
  CHECK(one.get().first);
  supply.end();
  Bytes byte(1);
  CHECK_FALSE(supply.take(1, byte.data(), 1));
}

}  // namespace trackloom::engines::libburn
