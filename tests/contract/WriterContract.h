#pragma once

#include <catch2/catch.hpp>

#include "contract/WriterWorld.h"

namespace trackloom::contract {

// What every writer engine owes the program, real or fake. Each function is the body of one test and gets a fresh
// world.

inline void oneWrite(WriterWorld& world) {
  world.heard().lines.clear();
  world.real().StartWrite();
  CHECK(world.heard().lines.empty());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
}

inline void queueTwoAudioTracks(WriterWorld& world) {
  world.real().SetDiscMode(AudioBlocks);
  world.real().ClearAudioQueue();
  REQUIRE(world.real().AddAudioTrack(world.audioFile("one", 40), 1));
  REQUIRE(world.real().AddAudioTrack(world.audioFile("two", 20), 2));
}

inline void secondWriteRepeatsTheFirst(WriterWorld& world) {
  queueTwoAudioTracks(world);
  world.real().SetTestMode(true);
  oneWrite(world);
  const auto first = world.heard().lines;
  CHECK(first == std::vector<std::string>{"OnWriteStarting", "OnTrackWriteStart 1 40", "OnTrackClosing 1",
                                          "OnTrackWriteStart 2 20", "OnTrackClosing 2", "OnOperationComplete"});
  CHECK(world.real().DiscStatus() == DiscEmpty);
  world.real().SetTestMode(false);
  oneWrite(world);
  CHECK(world.heard().lines == first);
  CHECK(world.real().AudioQueueBlocks() == 60);
  CHECK(world.real().DiscStatus() == DiscOpen);
}

inline void closedDiscHasNoRoom(WriterWorld& world) {
  queueTwoAudioTracks(world);
  world.real().SetCloseDisc(true);
  CHECK(world.real().FreeBlocks(AudioBlocks) > 0);
  CHECK(world.real().FreeBlocks(DataBlocks) > 0);
  oneWrite(world);
  CHECK(world.heard().lines.back() == "OnOperationComplete");
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.real().LastSessionStatus() == SessionClosed);
  CHECK(world.real().FreeBlocks(AudioBlocks) <= 0);
  CHECK(world.real().FreeBlocks(DataBlocks) <= 0);
}

inline void scratchInstanceMeasures(WriterWorld& world) {
  CDWriterXP& scratch = world.scratch();
  CHECK(scratch.AddAudioTrack(world.audioFile("measured", 225), 1));
  CHECK(scratch.AudioQueueBlocks() == 225);
  CHECK(scratch.BlocksToTime(scratch.AudioQueueBlocks()) == "00:03:00");
  CHECK_FALSE(scratch.AddAudioTrack(world.plainFile("no music", 5000), 2));
  CHECK(scratch.AudioQueueBlocks() == 225);
  CHECK_FALSE(scratch.MediaLoaded());
  CHECK(scratch.FreeBlocks(AudioBlocks) == 0);
  CHECK(scratch.SessionCount() == 0);
}

inline void shortTimesBeginWithNought(WriterWorld& world) {
  CDWriterXP& writer = world.scratch();
  CHECK(writer.BlocksToTime(44999) == "09:59:74");
  CHECK(writer.BlocksToTime(0) == "00:00:00");
  CHECK(writer.BlocksToTime(45000) == "10:00:00");
  CHECK(writer.BlocksToTime(450075) == "100:01:00");
  CHECK(writer.BlocksToTime(-1) == "00:00:00");
}

inline void bytesAreThoseOfTheKind(WriterWorld& world) {
  CDWriterXP& writer = world.scratch();
  CHECK(writer.BlocksToBytes(359849, AudioBlocks) == 846364848);
  CHECK(writer.BlocksToBytes(359849, DataBlocks) == 736970752);
  CHECK(writer.BlocksToBytes(1000000, AudioBlocks) == 2147483647);
}

inline void eventsOfACachedWrite(WriterWorld& world) {
  queueTwoAudioTracks(world);
  world.real().SetCacheAudioTracks(true);
  world.real().SetCloseSession(true);
  world.real().SetCloseDisc(true);
  oneWrite(world);
  CHECK(world.heard().lines ==
        std::vector<std::string>{"OnWriteStarting", "OnTrackCacheStart 1 40", "OnTrackWriteStart 1 40",
                                 "OnTrackClosing 1", "OnTrackCacheStart 2 20", "OnTrackWriteStart 2 20",
                                 "OnTrackClosing 2", "OnSessionClosing", "OnDiscClosing", "OnOperationComplete"});
}

inline void progressReachesTheLastBlock(WriterWorld& world) {
  queueTwoAudioTracks(world);
  oneWrite(world);
  std::int32_t before = 0;
  std::size_t ofFirst = 0;
  for (const auto& progress : world.heard().progress) {
    if (progress.track == 1) ++ofFirst;
    if (progress.track == 2 && before == 40) before = 0;
    CHECK(progress.position > before);
    before = progress.position;
    CHECK((progress.bufferPercent >= 0 && progress.bufferPercent <= 100));
  }
  CHECK(ofFirst >= 3);
  CHECK(before == 20);
  CHECK_FALSE(world.heard().bufferLevels.empty());
}

inline void nothingComesAfterAnAbort(WriterWorld& world) {
  queueTwoAudioTracks(world);
  world.slowDown();
  world.real().StartWrite();
  REQUIRE(world.runUntil([&] { return world.heard().has("OnTrackWriteStart 1 40"); }));
  world.real().AbortWrite();
  const auto lines = world.heard().lines;
  const auto reports = world.heard().progress.size();
  CHECK(world.real().DiscStatus() == DiscClosed);
  CHECK(world.real().FreeBlocks(AudioBlocks) <= 0);
  world.runPosted();
  CHECK(world.heard().lines == lines);
  CHECK(world.heard().progress.size() == reports);
}

inline void emptyQueueIsAFileError(WriterWorld& world) {
  for (const BlockKind kind : {AudioBlocks, DataBlocks}) {
    world.real().SetDiscMode(kind);
    oneWrite(world);
    CHECK(world.heard().lines.back() == "OnWriteError 2 0");
  }
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

}  // namespace trackloom::contract
