#include "runtime/Aside.h"

#include <catch2/catch.hpp>
#include <stdexcept>
#include <thread>
#include <vector>

namespace trackloom {

TEST_CASE("Work done aside gives what it gives and throws what it throws, one piece after the other") {
  int waits = 0;
  Aside aside([&waits](const Aside::Wait& wait) {
    ++waits;
    while (!wait(std::chrono::seconds(1))) continue;
  });
  std::vector<std::thread::id> threads;
  for (int round = 0; round < 3; ++round) threads.push_back(aside([] { return std::this_thread::get_id(); }));
  CHECK(threads[0] == threads[2]);
  CHECK(threads[0] != std::this_thread::get_id());
  CHECK_THROWS_WITH(aside([]() -> int { throw std::runtime_error("aside"); }), "aside");
  CHECK(aside([] { return 7; }) == 7);
  CHECK(waits == 5);
}

TEST_CASE("Work that nobody waits for any more keeps nobody") {
  std::promise<void> begun;
  const auto answers = std::make_shared<std::promise<void>>();
  const auto done = std::make_shared<std::promise<void>>();
  {
    Aside aside([&begun](const Aside::Wait&) {
      begun.get_future().wait();
      throw std::runtime_error("no more");
    });
    CHECK_THROWS_WITH(aside([&begun, answers, done] {
                        begun.set_value();
                        answers->get_future().wait();
                        done->set_value();
                      }),
                      "no more");
  }
  answers->set_value();
  done->get_future().wait();
}

}  // namespace trackloom
