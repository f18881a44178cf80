#include "engines/disc/NodeFailure.h"

#include <dirent.h>

#include <atomic>
#include <catch2/catch.hpp>
#include <cerrno>

#include "fakes/NextFunction.h"
#include "fakes/SleepingProgram.h"
#include "fakes/TempFolder.h"

namespace {

/// After so many more entries listings fail, as that of a process's folder does once the process has ended; below 0
/// they never do.
std::atomic<int>& entriesLeft() {
  static std::atomic<int> left = -1;
  return left;
}

}  // namespace

extern "C" dirent* readdir(DIR* folder) {
  if (entriesLeft() == 0) {
    errno = ENOENT;
    return nullptr;
  }
  if (entriesLeft() > 0) --entriesLeft();
  static const auto next = trackloom::fakes::theirs<decltype(readdir)>("readdir");
  return next(folder);
}

namespace trackloom::engines {

using Catch::Matchers::Contains;

TEST_CASE("Those who use a disc are named, and nobody else") {
  const fakes::TempFolder disc;
  CHECK(usersOf(disc.path()).empty());
  fakes::SleepingProgram inside(disc.path());
  const std::string one = "sleep (" + std::to_string(inside.id()) + ")";
  CHECK(usersOf(disc.path()) == one);
  CHECK(usersOf(disc.path() + "2").empty());
  fakes::SleepingProgram another(disc.path());
  CHECK_THAT(usersOf(disc.path()), Contains(" and ") && Contains(one));
}

TEST_CASE("A process that ends while the users of a disc are looked for ends the look at it alone") {
  const fakes::TempFolder disc;
  const fakes::SleepingProgram inside(disc.path());
  for (int entries = 0; entries < 50; ++entries) {
    entriesLeft() = entries;
    CHECK_NOTHROW(usersOf(disc.path()));
  }
  entriesLeft() = -1;
  CHECK_THAT(usersOf(disc.path()), Contains("sleep"));
}

}  // namespace trackloom::engines
