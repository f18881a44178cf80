#include <catch2/catch.hpp>

#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

namespace {

/// A write under way that would last for many seconds.
class LongWrite : public FakeWorld {
 public:
  LongWrite() {
    recorder->everyWrite = std::chrono::milliseconds(20);
    for (std::int16_t number = 1; number <= 4; ++number)
      writer->AddAudioTrack(track(std::string(1, static_cast<char>('a' + number)), 4000), number);
    for (const char* name : {"b", "c", "d", "e"})
      writer->AddDataFile(DiscPath(std::string("\\") + name), folder.host(std::string(name) + ".wav"));
  }
};

}  // namespace

TEST_CASE("After an abort nothing arrives, not even what was on its way, and the disc is spoilt") {
  LongWrite world;
  const bool data = GENERATE(false, true);
  world.writer->SetDiscMode(data ? DataBlocks : AudioBlocks);
  world.writer->StartWrite();
  REQUIRE(world.queue.runUntil([&] { return world.heard.progress.size() >= 2; }));
  world.queue.waitForPost();
  world.writer->AbortWrite();
  const Lines lines = world.heard.lines;
  const std::size_t reports = world.heard.progress.size();
  CHECK(world.writer->DiscStatus() == DiscClosed);
  CHECK(world.recorder->writesUnderWay == 0);
  world.queue.runPosted();
  CHECK(world.heard.lines == lines);
  CHECK(world.heard.progress.size() == reports);
}

TEST_CASE("An aborted test write leaves the disc as it was") {
  LongWrite world;
  world.writer->SetTestMode(true);
  world.writer->StartWrite();
  REQUIRE(world.queue.runUntil([&] { return !world.heard.progress.empty(); }));
  world.writer->AbortWrite();
  CHECK(world.writer->DiscStatus() == DiscEmpty);
}

TEST_CASE("An abort while a track is cached leaves the disc as it was") {
  LongWrite world;
  const bool data = GENERATE(false, true);
  world.writer->SetDiscMode(data ? DataBlocks : AudioBlocks);
  world.writer->SetCacheAudioTracks(true);
  world.writer->SetCacheDataTrack(true);
  world.writer->StartWrite();
  REQUIRE(world.queue.runUntil([&] { return world.heard.lines.size() == 2; }));
  CHECK(world.heard.lines[1].starts_with("OnTrackCacheStart 1 "));
  world.writer->AbortWrite();
  world.writer->EjectDisc();
  CHECK_FALSE(world.recorder->disc());
}

TEST_CASE("The disc can be ejected and the next one written right after an abort") {
  LongWrite world;
  world.writer->StartWrite();
  REQUIRE(world.runUntilLine("OnTrackWriteStart 1 4000"));
  world.writer->AbortWrite();
  CHECK(world.writer->EjectDisc());
  world.recorder->insert(FakeDisc::blank());
  world.recorder->everyWrite = std::chrono::milliseconds(0);
  world.writer->ClearAudioQueue();
  world.writer->AddAudioTrack(world.track("x", 30), 1);
  REQUIRE(world.write());
  CHECK(world.heard.lines.back() == "OnOperationComplete");
  CHECK((world.recorder->disc()->tracks == Lines{FakeWorld::samples("x", 30)}));
}

TEST_CASE("An engine that is destroyed while it writes stops the write and tells nothing more") {
  LongWrite world;
  world.writer->StartWrite();
  REQUIRE(world.runUntilLine("OnTrackWriteStart 1 4000"));
  const Lines lines = world.heard.lines;
  world.writer.reset();
  CHECK(world.recorder->writesUnderWay == 0);
  world.queue.runPosted();
  CHECK(world.heard.lines == lines);
}

TEST_CASE("A listener may destroy the engine from within an event") {
  LongWrite world;
  world.heard.onLine = [&](const std::string& line) {
    if (line.starts_with("OnTrackWriteStart")) world.writer.reset();
  };
  world.writer->StartWrite();
  REQUIRE(world.queue.runUntil([&] { return world.writer == nullptr; }));
  world.queue.runPosted();
  CHECK(world.heard.lines == Lines{"OnWriteStarting", "OnTrackWriteStart 1 4000"});
}

TEST_CASE("An abort with nothing under way does nothing") {
  FakeWorld world;
  world.writer->AbortWrite();
  world.writer->AddAudioTrack(world.track("a", 5), 1);
  REQUIRE(world.write());
  world.writer->AbortWrite();
  CHECK(world.recorder->disc()->state.status == DiscOpen);
  CHECK(world.heard.lines.back() == "OnOperationComplete");
}

TEST_CASE("An error that was on its way is not told after an abort") {
  FakeWorld world;
  world.writer->StartWrite();
  world.writer->AbortWrite();
  world.queue.runPosted();
  CHECK(world.heard.lines.empty());
}

}  // namespace trackloom::engines::writer
