#include "ports/Wakefulness.h"

#include <atomic>
#include <catch2/catch.hpp>
#include <thread>

#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "fakes/FakeEventQueue.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"
#include "fakes/WriterTranscript.h"

namespace trackloom::engines::writer {

namespace {

/// Counts the holds that are kept now.
class Watch final : public Wakefulness {
 public:
  std::atomic<int> kept = 0;
  std::vector<std::string> reasons;

  Hold stayAwake(const std::string& why) override {
    reasons.push_back(why);
    ++kept;
    return {nullptr, [this](void*) { --kept; }};
  }
  /// The operation's thread may still be about to end when its last event is there.
  bool slept() const {
    for (int turn = 0; kept != 0 && turn < 30000; ++turn) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return kept == 0;
  }
};

/// The real engine on a virtual recorder, which is watched.
struct WatchedWorld {
  fakes::TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  std::shared_ptr<Watch> watch = std::make_shared<Watch>();
  std::unique_ptr<DiscWriters> writers;
  std::unique_ptr<CDWriterXP> writer;

  explicit WatchedWorld(const std::string& medium = "CD-R") {
    virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
    folder.file("Virtual Recorder/tray/Disc 0001/disc.ini",
                "[disc]\nmedium = " + medium + "\nstatus = blank\nblocks = 359849\n");
    writers = std::make_unique<DiscWriters>(virtualrecorder::findVirtualRecorders(HostPath(folder.path())),
                                            std::make_shared<audio::AudioFiles>(), queue, patience,
                                            WriterSettings{150, folder.host("scratch"), false, watch});
    writer = writers->create(heard);
    REQUIRE(writer->SelectDrive(0));
    REQUIRE(writer->AddAudioTrack(folder.file("a.wav", fakes::wav(fakes::noise(75 * 2352, 1))), 1));
  }
  void run() {
    REQUIRE(queue.runUntil([this] { return heard.ended(); }));
  }
};

}  // namespace

TEST_CASE("The computer is kept awake while a disc is written, and no longer") {
  WatchedWorld world;
  CHECK(world.watch->reasons.empty());
  world.writer->StartWrite();
  CHECK(world.watch->reasons == std::vector<std::string>{"A disc is being written"});
  world.run();
  CHECK(world.watch->slept());
  CHECK(world.heard.has("OnOperationComplete"));
}

TEST_CASE("The computer is kept awake for as long as the drive is at work") {
  WatchedWorld world;
  world.folder.file("Virtual Recorder/recorder.ini", "[recorder]\nrealTimePacing = yes\nmaximumSpeed = 1\n");
  world.writer->StartWrite();
  world.queue.runUntil([&] { return world.heard.has("OnTrackWriteStart 1 75"); });
  CHECK(world.watch->kept == 1);
  SECTION("to its end") {
    world.run();
  }
  SECTION("until it is cancelled") {
    world.writer->AbortWrite();
  }
  SECTION("until the instance goes") {
    world.writer.reset();
  }
  CHECK(world.watch->slept());
}

TEST_CASE("The computer may sleep after a write that fails, and is not asked where nothing begins") {
  WatchedWorld world;
  world.folder.file("Virtual Recorder/recorder.ini", "[faults]\nfailWriteAt = 10\n");
  world.writer->StartWrite();
  world.run();
  CHECK_FALSE(world.heard.has("OnOperationComplete"));
  CHECK(world.watch->slept());
  CHECK(world.watch->reasons.size() == 1);
  world.writer->ClearAudioQueue();
  world.writer->StartWrite();
  CHECK_FALSE(world.writer->EraseDisc(true));
  CHECK_FALSE(world.writer->CloseLastSession(false));
  CHECK(world.watch->reasons.size() == 1);
}

TEST_CASE("The computer is kept awake while a disc is closed or erased") {
  WatchedWorld world("CD-RW");
  world.writer->StartWrite();
  world.run();
  REQUIRE(world.watch->slept());
  REQUIRE(world.writer->CloseLastSession(true));
  CHECK(world.watch->reasons.size() == 2);
  world.heard.lines.clear();
  world.run();
  REQUIRE(world.watch->slept());
  world.folder.file("Virtual Recorder/recorder.ini", "[recorder]\nrealTimePacing = yes\nmaximumSpeed = 52\n");
  REQUIRE(world.writer->EraseDisc(true));
  CHECK(world.watch->reasons.size() == 3);
  world.heard.lines.clear();
  world.run();
  CHECK(world.watch->slept());
}

TEST_CASE("The computer is kept awake while an image file is made, also one that fails") {
  WatchedWorld world;
  REQUIRE(world.writer->AddDataFile(DiscPath("a.wav"), world.folder.host("a.wav")));
  int during = 0;
  world.heard.onLine = [&](const std::string&) { during = world.watch->kept; };
  CHECK(world.writer->CreateIsoImage(world.folder.host("x.iso")));
  CHECK(during == 1);
  CHECK(world.watch->kept == 0);
  CHECK(world.watch->reasons == std::vector<std::string>{"An image file is being written"});
  CHECK_FALSE(world.writer->CreateIsoImage(HostPath("/nowhere/at/all.iso")));
  CHECK(world.watch->kept == 0);
}

}  // namespace trackloom::engines::writer
