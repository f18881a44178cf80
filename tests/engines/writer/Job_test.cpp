#include "engines/writer/Job.h"

#include <catch2/catch.hpp>
#include <future>
#include <new>

#include "engines/disc/SectorSource.h"
#include "engines/writer/HandOver.h"
#include "fakes/FakePatience.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::writer {

using namespace std::chrono_literals;

namespace {

/// Kind, number and words of the error that an operation ended in.
template <class Failure>
std::string errorOf(const Failure& failure) {
  const Outcome outcome = outcomeOf([&] { throw failure; });
  const auto& error = std::get<EngineError>(outcome);
  return std::to_string(static_cast<int>(error.kind())) + " " + std::to_string(error.number()) + " " + error.words();
}

}  // namespace

TEST_CASE("An operation ends done, cancelled, or in an error, whatever it throws") {
  CHECK(std::holds_alternative<Done>(outcomeOf([] {})));
  CHECK(std::holds_alternative<Cancelled>(outcomeOf([] { throw Stopped(); })));
  CHECK(errorOf(EngineError(ErrorKind::ReadBuffer, 7, "words")) == "0 7 words");
  CHECK(errorOf(RuntimeError(RuntimeError::DiskFull)) == "2 0 Disk full");
  CHECK(errorOf(std::bad_alloc()) == "1 0 not enough memory");
  CHECK(errorOf(std::runtime_error("of the device")) == "3 0 of the device");
}

TEST_CASE("A job tells its outcome once, and a cancelled one ends as it stops") {
  fakes::FakePatience patience;
  std::promise<Outcome> told;
  Job job(
      [](const std::stop_token& stop) {
        while (!stop.stop_requested()) std::this_thread::yield();
        throw Stopped();
      },
      [&](const Outcome& outcome) { told.set_value(outcome); });
  job.cancel(patience);
  auto outcome = told.get_future();
  REQUIRE(outcome.wait_for(0s) == std::future_status::ready);
  CHECK(std::holds_alternative<Cancelled>(outcome.get()));
  job.cancel(patience);
}

TEST_CASE("Whoever waits for the end of a reader goes on when it ends") {
  HandOver handOver;
  CHECK(handOver.awaitEnd(0ms, {}));
  handOver.begin();
  CHECK_FALSE(handOver.awaitEnd(0ms, {}));
  auto ended = std::async(std::launch::async, [&] { return handOver.awaitEnd(24h, {}); });
  REQUIRE(ended.wait_for(50ms) == std::future_status::timeout);
  handOver.end();
  CHECK(ended.get());
}

}  // namespace trackloom::engines::writer
