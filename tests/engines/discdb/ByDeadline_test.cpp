#include "engines/discdb/ByDeadline.h"

#include <catch2/catch.hpp>

#include "fakes/FakePatience.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

namespace {

using std::chrono::milliseconds;

/// "" or the words of the failure.
std::string awaited(milliseconds limit, const Patience::Wait& ready) {
  fakes::FakePatience patience;
  try {
    awaitUntil(std::chrono::steady_clock::now() + limit, patience, ready);
    return "";
  } catch (const RuntimeError& error) {
    return error.description();
  }
}

}  // namespace

TEST_CASE("What is ready is had, also behind the deadline") {
  CHECK(awaited(milliseconds(60000), [](milliseconds) { return true; }).empty());
  CHECK(awaited(milliseconds(-1), [](milliseconds) { return true; }).empty());
}

TEST_CASE("What is not ready at the deadline is told in words, and is never waited for longer than is left") {
  milliseconds longest{0};
  const auto never = [&](milliseconds atMost) {
    longest = std::max(longest, atMost);
    return false;
  };
  CHECK(awaited(milliseconds(20), never) == "The disc database has not answered in time");
  CHECK(longest <= milliseconds(1));
  longest = milliseconds(0);
  CHECK(awaited(milliseconds(0), never) == "The disc database has not answered in time");
  CHECK(longest == milliseconds(0));
}

}  // namespace trackloom::engines::discdb
