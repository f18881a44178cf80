#include "engines/ripper/RecorderDrive.h"

#include <catch2/catch.hpp>

#include "engines/virtual/VirtualRecorders.h"
#include "fakes/TempFolder.h"

namespace trackloom::engines::ripper {

TEST_CASE("A drive tells the names that its disc bears, data tracks and all sessions included") {
  const fakes::TempFolder folder;
  virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
  std::filesystem::remove_all(folder / "Virtual Recorder/tray");
  folder.write("Virtual Recorder/tray/Disc/disc.ini",
               "[disc]\nmedium = CD-R\nstatus = closed\nblocks = 359849\ntitle = Album\nperformer = Artist\n"
               "[session 1]\nstatus = closed\n[session 2]\nstatus = closed\n"
               "[track 1]\nsession = 1\nkind = audio\nstart = 0\nlength = 1\npregap = 0\ntitle = One\n"
               "[track 2]\nsession = 2\nkind = audio\nstart = 20\nlength = 1\npregap = 0\nperformer = Guest\n");
  folder.write("Virtual Recorder/tray/Disc/disc.bin", std::string(std::size_t{21} * 2352, 'x'));
  RecorderDrive drive(virtualrecorder::findVirtualRecorders(folder.host(""), {}).front());
  const auto contents = drive.contents();
  REQUIRE(contents);
  CHECK(contents->text == DiscText{{"Album", "Artist"}, {{"One", ""}, {"", "Guest"}}});
}

}  // namespace trackloom::engines::ripper
