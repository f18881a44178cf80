#include <sys/stat.h>

#include <catch2/catch.hpp>

#include "engines/virtual/VirtualRecorder.h"
#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

using Lines = std::vector<std::string>;

namespace {

class ImageWorld : public VirtualWorld {
 public:
  const Lines& write(const HostPath& image) {
    heard().lines.clear();
    real().WriteIsoImage(image);
    CHECK(heard().lines.empty());
    REQUIRE(queue.runUntil([this] { return heard().ended(); }));
    return heard().lines;
  }
  HostPath image(std::size_t bytes) const { return folder.file("finished.iso", noise(bytes, 5)); }
  std::string iso() const { return contentOf(disc() / "disc.iso"); }
};

/// A virtual recorder that has something done between the begin of its write and the first block.
class InterruptedRecorder final : public virtualrecorder::VirtualRecorder {
 public:
  using VirtualRecorder::VirtualRecorder;

  std::function<void()> beforeFirstBlock;

  void write(const WriteOrder& order, SectorSource& source, OperationObserver& observer,
             const std::stop_token& stop) override {
    struct Interruption final : OperationObserver {
      Interruption(OperationObserver& told, std::function<void()> deedOnce) : inner(told), deed(std::move(deedOnce)) {}
      void trackStarted(std::int16_t track, std::int32_t blocks) override {
        inner.trackStarted(track, blocks);
        deed();
      }
      OperationObserver& inner;
      std::function<void()> deed;
    } interruption(observer, beforeFirstBlock);
    VirtualRecorder::write(order, source, interruption, stop);
  }
};

/// What the disc's folder holds, to the byte.
std::string contentsOf(const std::filesystem::path& disc) {
  std::string all;
  for (const auto& entry : std::filesystem::directory_iterator(disc))
    all += entry.path().filename().string() + contentOf(entry.path());
  return all;
}

}  // namespace

TEST_CASE("A finished image lies on the disc byte for byte, filled up with zeros to whole sectors") {
  ImageWorld world;
  const std::size_t bytes = GENERATE(1U, 2047U, 2048U, 2049U, 700000U);
  const HostPath image = world.image(bytes);
  CHECK(world.write(image).back() == "OnOperationComplete");
  const std::size_t blocks = (bytes + 2047) / 2048;
  CHECK((world.iso() == noise(bytes, 5) + std::string(blocks * 2048 - bytes, '\0')));
  CHECK(world.heard().has("OnTrackWriteStart 1 " + std::to_string(blocks)));
  CHECK(world.heard().progress.back().position == static_cast<std::int32_t>(blocks));
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.real().LastSessionStatus() == SessionClosed);
  CHECK(world.real().FreeBlocks(DataBlocks) == 0);
  CHECK(world.real().FreeBlocks(AudioBlocks) == 0);
}

TEST_CASE("A finished image closes the disc whatever is set, and only what is set is told") {
  ImageWorld world;
  const bool session = GENERATE(false, true);
  const bool disc = GENERATE(false, true);
  world.real().SetCloseSession(session);
  world.real().SetCloseDisc(disc);
  world.real().SetDiscMode(AudioBlocks);
  world.real().SetCacheDataTrack(true);
  Lines lines{"OnWriteStarting", "OnTrackWriteStart 1 3", "OnTrackClosing 1"};
  if (session) lines.emplace_back("OnSessionClosing");
  if (disc) lines.emplace_back("OnDiscClosing");
  lines.emplace_back("OnOperationComplete");
  CHECK(world.write(world.image(5000)) == lines);
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.real().CloseDisc() == disc);
}

TEST_CASE("A finished image that is tested leaves the disc as it was") {
  ImageWorld world;
  const std::string before = contentsOf(world.disc());
  world.real().SetTestMode(true);
  CHECK(world.write(world.image(5000)).back() == "OnOperationComplete");
  CHECK(contentsOf(world.disc()) == before);
}

TEST_CASE("A file that is no image is refused in words that name it, and the disc is untouched") {
  ImageWorld world;
  const std::string before = contentsOf(world.disc());
  const auto [name, reason] = GENERATE(table<std::string, std::string>({{"missing.iso", "No such file or directory"},
                                                                        {"empty.iso", "empty"},
                                                                        {"folder.iso", "not a regular file"},
                                                                        {"pipe.iso", "not a regular file"}}));
  world.folder.file("empty.iso", "");
  std::filesystem::create_directory(world.folder.host("folder.iso").text);
  REQUIRE(mkfifo(world.folder.host("pipe.iso").text.c_str(), 0600) == 0);
  CHECK(world.write(world.folder.host(name)) == Lines{"OnWriteError 2 0"});
  const std::string words = world.writers().failureDetail().lastFailure();
  CHECK(words.find(name) != std::string::npos);
  CHECK(words.find(reason) != std::string::npos);
  CHECK(contentsOf(world.disc()) == before);
}

TEST_CASE("A device is no image") {
  ImageWorld world;
  CHECK(world.write(HostPath("/dev/zero")) == Lines{"OnWriteError 2 0"});
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

TEST_CASE("A finished image larger than the disc is refused before its first block") {
  ImageWorld world;
  world.insert(100);
  CHECK(world.write(world.image(100 * 2048 + 1)) == Lines{"OnWriteError 3 " + std::to_string(0x056300)});
  CHECK(world.real().LastDeviceErrorText().find("100 blocks") != std::string::npos);
  CHECK(world.real().DiscStatus() == DiscEmpty);
  CHECK(world.write(world.image(100 * 2048)).back() == "OnOperationComplete");
}

TEST_CASE("A finished image goes behind the data sessions of an open disc, and not onto an audio or a closed disc") {
  ImageWorld world;
  world.real().SetDiscMode(DataBlocks);
  REQUIRE(world.real().AddDataFile(DiscPath("\\a.mp3"), world.plainFile("a", 3000)));
  world.real().SetCloseSession(true);
  REQUIRE(world.wroteWell());
  const std::string first = world.iso();
  CHECK(world.write(world.image(5000)).back() == "OnOperationComplete");
  CHECK(world.real().SessionCount() == 2);
  CHECK((world.iso() ==
         first + std::string(std::size_t{11400} * 2048, '\0') + noise(5000, 5) + std::string(3 * 2048 - 5000, '\0')));
  CHECK(world.write(world.image(5000)) == Lines{"OnWriteError 3 " + std::to_string(0x053005)});
  world.insert(359849);
  world.real().SetDiscMode(AudioBlocks);
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 40), 1));
  REQUIRE(world.wroteWell());
  CHECK(world.write(world.image(5000)) == Lines{"OnWriteError 3 " + std::to_string(0x056400)});
}

TEST_CASE("A finished image that is cut short or changed while it is recorded is a file error that names it") {
  const TempFolder folder;
  virtualrecorder::createVirtualRecorder(folder.host("R"));
  const auto recorder = std::make_shared<InterruptedRecorder>(folder.host("R"));
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  DiscWriters writers({recorder}, std::make_shared<audio::AudioFiles>(), queue, patience, {});
  const auto writer = writers.create(heard);
  REQUIRE(writer->SelectDrive(0));
  // More than what is read ahead of the recorder.
  const HostPath image = folder.file("finished.iso", noise(4000 * 2048, 5));
  const std::string change = GENERATE("cut", "changed");
  recorder->beforeFirstBlock = [&] {
    if (change == "cut") std::filesystem::resize_file(image.text, 2048);
    if (change == "changed") folder.file("finished.iso", noise(4000 * 2048, 6));
  };
  REQUIRE(writer->WriteIsoImage(image));
  REQUIRE(queue.runUntil([&] { return heard.ended(); }));
  CHECK(heard.lines.back() == "OnWriteError 2 0");
  CHECK(writers.failureDetail().lastFailure() == image.text + ": changed while it was being recorded");
  CHECK(writer->DiscStatus() == DiscClosed);
}

TEST_CASE("A finished image is not begun while the drive is at work") {
  ImageWorld world;
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 40), 1));
  world.real().StartWrite();
  CHECK_FALSE(world.real().WriteIsoImage(world.image(5000)));
  REQUIRE(world.queue.runUntil([&] { return world.heard().ended(); }));
  CHECK(world.heard().lines.back() == "OnOperationComplete");
  CHECK(world.tracksOnDisc() == 1);
  CHECK(world.real().DiscStatus() == DiscOpen);
}

}  // namespace trackloom::engines::writer
