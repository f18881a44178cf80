#include "engines/writer/DataImage.h"

#include <catch2/catch.hpp>
#include <thread>
#include <vector>

#include "engines/disc/SectorSource.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::writer {

TEST_CASE("An image that is stopped hands out no more, however much of it lies ready") {
  const fakes::TempFolder folder;
  const HostPath file = folder.file("small", fakes::noise(std::size_t{3} << 20, 1));
  const DataEntry entry{DiscPath("\\small"), std::make_shared<Source>(file, SourceFile(file).note()), false};
  std::stop_source stop;
  DataImage image({entry}, {.label = "x"}, std::make_shared<SourcesInUse>(), stop.get_token());
  while (image.bufferPercent() < 100) std::this_thread::yield();
  std::vector<std::byte> sector(2048);
  image.read(sector);
  stop.request_stop();
  // What was fetched before may still be handed out.
  std::vector<std::byte> rest((std::size_t{1} << 20));
  CHECK_THROWS_AS(image.read(rest), Stopped);
}

}  // namespace trackloom::engines::writer
