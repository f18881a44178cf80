#include <catch2/catch.hpp>

#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

namespace {

/// An engine with one of the recorders of a folder.
class OneOfMany {
 public:
  OneOfMany(DiscWriters& writers, std::int16_t drive) : writer(writers.create(heard)) {
    REQUIRE(writer->SelectDrive(drive));
  }

  fakes::WriterTranscript heard;
  std::unique_ptr<CDWriterXP> writer;
};

std::string onlyDiscIn(const TempFolder& folder, const std::string& recorder) {
  return std::filesystem::directory_iterator(folder / (recorder + "/tray"))->path();
}

}  // namespace

TEST_CASE("Ninety-nine tracks follow one another, each with its own sound, and the buffer tells a level throughout") {
  VirtualWorld world;
  world.real().SetCloseDisc(true);
  world.real().SetCacheAudioTracks(GENERATE(false, true));
  std::string expected;
  for (std::int16_t track = 1; track <= 99; ++track) {
    const std::string name(1, static_cast<char>('0' + track));
    const std::int32_t blocks = 1 + track % 7 * 11;
    REQUIRE(world.real().AddAudioTrack(world.audioFile(name + std::to_string(track), blocks), track));
    if (track > 1) expected.append(std::size_t{150} * 2352, '\0');
    expected += VirtualWorld::audioOf(name, blocks);
  }
  REQUIRE(world.wroteWell());
  CHECK((contentOf(world.disc() / "disc.bin") == expected));
  CHECK(world.tracksOnDisc() == 99);
  std::int16_t last = 0;
  for (const auto& progress : world.heard().progress) {
    CHECK((progress.track == last || progress.track == last + 1));
    last = progress.track;
  }
  CHECK(last == 99);
  CHECK(world.heard().bufferLevels.size() == world.heard().progress.size());
  for (const std::int16_t level : world.heard().bufferLevels) CHECK((level >= 0 && level <= 100));
}

TEST_CASE("Two recorders write at the same time, each its own disc") {
  const TempFolder folder;
  for (const char* name : {"Virtual Recorder", "Virtual Recorder 2"}) {
    virtualrecorder::createVirtualRecorder(folder.host(name));
    folder.file(std::string(name) + "/recorder.ini", "[recorder]\nrealTimePacing = yes\nmaximumSpeed = 5\n");
  }
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  DiscWriters writers(virtualrecorder::findVirtualRecorders(HostPath(folder.path())),
                      std::make_shared<audio::AudioFiles>(), queue, patience, {150, folder.host("scratch")});
  OneOfMany first(writers, 0);
  OneOfMany second(writers, 1);
  const std::string sound = noise(600 * 2352, 1);
  REQUIRE(first.writer->AddAudioTrack(folder.file("one.wav", wav(sound)), 1));
  second.writer->SetDiscMode(DataBlocks);
  REQUIRE(second.writer->AddDataFile(DiscPath("\\two"), folder.file("two", noise(1000000, 2))));
  bool together = false;
  first.heard.onLine = [&](const std::string&) {
    together = together ||
               (first.heard.has("OnTrackWriteStart 1 600") && !second.heard.lines.empty() && !second.heard.ended());
  };
  first.writer->StartWrite();
  second.writer->StartWrite();
  REQUIRE(queue.runUntil([&] { return first.heard.ended() && second.heard.ended(); }));
  CHECK(together);
  CHECK(first.heard.lines.back() == "OnOperationComplete");
  CHECK(second.heard.lines.back() == "OnOperationComplete");
  CHECK((contentOf(onlyDiscIn(folder, "Virtual Recorder") + "/disc.bin") == sound));
  CHECK((fakes::outputOf("isoinfo -J -x /two -i '" + onlyDiscIn(folder, "Virtual Recorder 2") + "/disc.iso'") ==
         noise(1000000, 2)));
}

TEST_CASE("Discs of 74 and 80 minutes and of any other size take what they hold, and not a block more") {
  VirtualWorld world;
  const bool rewritable = GENERATE(false, true);
  const std::int32_t blocks = GENERATE(333000, 359849, 1, 77);
  world.insert(blocks, rewritable);
  CHECK(world.real().FreeBlocks(AudioBlocks) == blocks);
  CHECK(world.real().FreeBlocks(DataBlocks) == blocks);
  CHECK(world.real().DiscRewritable() == rewritable);
  if (blocks > 100) return;
  REQUIRE(world.real().AddAudioTrack(world.audioFile("b", blocks + 1), 1));
  REQUIRE(world.write());
  CHECK(world.heard().lines == std::vector<std::string>{"OnWriteError 3 " + std::to_string(0x056300)});
  world.real().ClearAudioQueue();
  REQUIRE(world.real().AddAudioTrack(world.audioFile("a", blocks), 1));
  CHECK(world.wroteWell());
  CHECK(world.real().FreeBlocks(AudioBlocks) == 0);
}

}  // namespace trackloom::engines::writer
