#include "engines/writer/SourcesInUse.h"

#include <array>
#include <catch2/catch.hpp>
#include <chrono>
#include <future>
#include <optional>
#include <vector>

#include "engines/disc/SectorSource.h"
#include "engines/writer/DataImage.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::writer {

using namespace fakes;
using namespace std::chrono_literals;

namespace {

const HostPath a("/net/a");
const HostPath b("/net/b");

using Files = std::vector<HostPath>;

std::optional<HostPath> usedOf(SourcesInUse& inUse, const Files& files) {
  return inUse.awaitFree(files, 0ms, {});
}

}  // namespace

TEST_CASE("Of the files asked for the first that somebody uses is named") {
  const auto inUse = std::make_shared<SourcesInUse>();
  CHECK_FALSE(usedOf(*inUse, {a, b}));
  std::optional<SourcesInUse::Use> useOfA(std::in_place, inUse, a);
  std::optional<SourcesInUse::Use> useOfB(std::in_place, inUse, b);
  CHECK(usedOf(*inUse, {a, b}) == a);
  CHECK(usedOf(*inUse, {b, a}) == b);
  CHECK_FALSE(usedOf(*inUse, {}));
  useOfA.reset();
  CHECK_FALSE(usedOf(*inUse, {a}));
  CHECK(usedOf(*inUse, {a, b}) == b);
}

TEST_CASE("A file that two use is in use until both have done with it") {
  const auto inUse = std::make_shared<SourcesInUse>();
  std::optional<SourcesInUse::Use> one(std::in_place, inUse, a);
  std::optional<SourcesInUse::Use> other(std::in_place, inUse, a);
  one.reset();
  CHECK(usedOf(*inUse, {a}) == a);
  other.reset();
  CHECK_FALSE(usedOf(*inUse, {a}));
}

TEST_CASE("Whoever waits for a file goes on when it is done with, and is stopped when nobody waits any more") {
  const auto inUse = std::make_shared<SourcesInUse>();
  std::optional<SourcesInUse::Use> use(std::in_place, inUse, a);
  std::stop_source stop;
  auto waiting = std::async(std::launch::async, [&] { return inUse->awaitFree(Files{a}, 24h, stop.get_token()); });
  SECTION("done with") {
    use.reset();
    CHECK_FALSE(waiting.get());
  }
  SECTION("stopped") {
    stop.request_stop();
    CHECK_THROWS_AS(waiting.get(), Stopped);
  }
}

TEST_CASE("A file of a data image is in use while the image has come to it and is not through with it") {
  const TempFolder folder;
  const HostPath file = folder.file("large", noise(std::size_t{24} << 20, 1));
  const DataEntry entry{DiscPath("\\large"), std::make_shared<Source>(file, SourceFile(file).note()), false};
  const auto inUse = std::make_shared<SourcesInUse>();
  CHECK_FALSE(usedOf(*inUse, {file}));
  DataImage image({entry}, {.label = "x"}, inUse);
  std::vector<std::byte> sectors(std::size_t{2} << 20);
  image.read(sectors);
  // What the library reads ahead is far less than the file.
  CHECK(usedOf(*inUse, {file}) == file);
  sectors.resize(static_cast<std::size_t>(image.blocks()) * 2048 - sectors.size());
  image.read(sectors);
  CHECK_FALSE(usedOf(*inUse, {file}));
}

}  // namespace trackloom::engines::writer
