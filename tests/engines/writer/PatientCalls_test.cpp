#include <algorithm>
#include <atomic>
#include <catch2/catch.hpp>
#include <functional>
#include <set>
#include <thread>

#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

namespace {

/// A recorder that answers nothing before it is let.
class SlowRecorder final : public FakeRecorder {
 public:
  std::atomic<bool> answers = true;
  std::atomic<bool> asked = false;

  bool take() override {
    await();
    return FakeRecorder::take();
  }
  void enableWriteGuard(bool on) override {
    await();
    FakeRecorder::enableWriteGuard(on);
  }
  std::shared_ptr<const DriveSnapshot> look() override {
    await();
    return FakeRecorder::look();
  }
  void write(const WriteOrder&, SectorSource&, OperationObserver&, const std::stop_token& stop) override {
    answers = false;
    while (!stop.stop_requested()) std::this_thread::yield();
    await();
    throw Stopped();
  }
  void eject() override {
    await();
    FakeRecorder::eject();
  }

 private:
  void await() {
    asked = true;
    while (!answers) std::this_thread::yield();
  }
};

class SlowWorld {
 public:
  SlowWorld() {
    recorder->insert(FakeDisc::blank());
    REQUIRE(writer->SelectDrive(0));
    patience.waits = 0;
    // The drive answers once the window's thread has had time to paint.
    patience.meanwhile = [this] {
      painted = true;
      recorder->answers = true;
    };
  }

  /// What the call gives when it has to wait for the drive.
  template <class Call>
  auto waited(const Call& call) {
    painted = false;
    recorder->answers = false;
    const auto result = call();
    CHECK(painted);
    return result;
  }

  TempFolder folder;
  std::shared_ptr<SlowRecorder> recorder = std::make_shared<SlowRecorder>();
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  bool painted = false;
  DiscWriters writers{
      {recorder}, std::make_shared<audio::AudioFiles>(), queue, patience, {150, folder.host("scratch")}};
  std::unique_ptr<CDWriterXP> writer = writers.create(heard);
};

}  // namespace

TEST_CASE("While a drive is waited for in a call that gives a result, the window is painted") {
  SlowWorld world;
  CDWriterXP& writer = *world.writer;
  CHECK(world.waited([&] { return writer.MediaLoaded(); }));
  CHECK(world.waited([&] { return writer.DiscStatus(); }) == DiscEmpty);
  CHECK(world.waited([&] { return writer.DiscType(); }) == DiscTypeCdRom);
  CHECK_FALSE(world.waited([&] { return writer.DiscRewritable(); }));
  CHECK(world.waited([&] { return writer.SessionCount(); }) == 0);
  CHECK(world.waited([&] { return writer.LastSessionStatus(); }) == SessionEmpty);
  CHECK(world.waited([&] { return writer.FreeBlocks(AudioBlocks); }) == 359849);
  CHECK(world.waited([&] { return writer.MaxWriteSpeed(); }) == 16);
  CHECK(world.waited([&] { return writer.HasWriteGuard(); }));
  CHECK(world.waited([&] { return writer.DriveVendor(0); }) == " Fake ");
  CHECK(world.waited([&] { return writer.DriveProduct(0); }) == "Recorder\t");
  CHECK(world.waited([&] { return writer.SelectDrive(0); }));
  world.waited([&] {
    writer.EnableWriteGuard(true);
    return 0;
  });
  CHECK(world.recorder->guardOn);
  CHECK_FALSE(world.waited([&] { return writer.EraseDisc(true); }));
  CHECK_FALSE(world.waited([&] { return writer.CloseLastSession(true); }));
  CHECK(world.waited([&] { return writer.EjectDisc(); }));
  CHECK_FALSE(world.recorder->disc());
}

TEST_CASE("What a call refuses is told though it was found aside") {
  SlowWorld world;
  world.recorder->refuseTake = true;
  CHECK_FALSE(world.waited([&] { return world.writer->SelectDrive(0); }));
  world.recorder->refuseTake = false;
  REQUIRE(world.writer->SelectDrive(0));
  world.recorder->refuseEject = true;
  CHECK_FALSE(world.waited([&] { return world.writer->EjectDisc(); }));
  CHECK(world.writers.failureDetail().lastFailure() == "the tray is stuck (4/53/00)");
}

TEST_CASE("Files are looked at with patience, and the window's thread opens none") {
  SlowWorld world;
  const HostPath path = world.folder.file("a.wav", wav(std::string(2352, 'x')));
  CHECK(world.writer->AddAudioTrack(path, 1));
  CHECK(world.patience.waits == 1);
  CHECK(world.writer->AddDataFile(DiscPath("\\a"), path));
  CHECK(world.patience.waits == 2);
  CHECK_FALSE(world.writer->AddAudioTrack(world.folder.host("gone"), 2));
  CHECK(world.patience.waits == 4);
  CHECK_FALSE(world.writer->AddDataFile(DiscPath("\\b"), world.folder.host("gone")));
  CHECK(world.patience.waits == 6);
}

TEST_CASE("An abort waits with patience for the drive to stop") {
  SlowWorld world;
  world.writer->AddAudioTrack(world.folder.file("a.wav", wav(std::string(2352, 'x'))), 1);
  world.writer->StartWrite();
  REQUIRE(world.queue.runUntil([&] { return world.heard.has("OnWriteStarting"); }));
  while (world.recorder->answers) std::this_thread::yield();
  world.painted = false;
  world.writer->AbortWrite();
  CHECK(world.painted);
}

TEST_CASE("The events of an image file come on the calling thread, within the call and in order") {
  FakeWorld world;
  std::set<std::thread::id> threads;
  world.heard.onLine = [&](const std::string&) { threads.insert(std::this_thread::get_id()); };
  world.writer->AddDataFile(DiscPath("\\a"), world.track("a", 5));
  world.writer->AddDataFile(DiscPath("\\b"), world.track("b", 5));
  world.patience.waits = 0;
  CHECK(world.writer->CreateIsoImage(world.folder.host("x.iso")));
  CHECK(world.patience.waits == 1);
  CHECK(threads == std::set{std::this_thread::get_id()});
  CHECK(world.heard.lines ==
        Lines{"OnImageTrackStart 1", "OnTrackCacheStart 1 6", "OnImageTrackStart 2", "OnTrackCacheStart 2 6"});
}

TEST_CASE("The progress of an image file rises with each event, up to the blocks of its file") {
  FakeWorld world;
  // Far more than is read ahead.
  world.writer->AddDataFile(DiscPath("\\a"), world.folder.file("a", noise(std::size_t{30} << 20, 1)));
  REQUIRE(world.writer->CreateIsoImage(world.folder.host("x.iso")));
  const auto& positions = world.heard.cachePositions;
  REQUIRE(positions.size() > 2);
  CHECK(std::ranges::adjacent_find(positions, std::greater_equal()) == positions.end());
  CHECK(positions.front() > 0);
  CHECK(positions.back() == 15360);
}

}  // namespace trackloom::engines::writer
