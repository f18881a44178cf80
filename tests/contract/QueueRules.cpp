#include "contract/WriterContract.h"

namespace trackloom::contract {

using Lines = std::vector<std::string>;

namespace {

void numbersStayAsGiven(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath one = world.audioFile("one", 40);
  const HostPath two = world.audioFile("two", 20);
  CHECK(writer.AddAudioTrack(one, 5));
  CHECK(writer.AddAudioTrack(two, 2));
  CHECK(writer.AddAudioTrack(two, 2));
  CHECK(writer.AudioQueueBlocks() == 80);
  writer.ListAudioTracks();
  CHECK(world.heard().listed == Lines{"5 " + one.text, "2 " + two.text, "2 " + two.text});
}

void firstOfANumberIsRemoved(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath one = world.audioFile("one", 40);
  const HostPath two = world.audioFile("two", 20);
  CHECK(writer.AddAudioTrack(one, 2));
  CHECK(writer.AddAudioTrack(two, 7));
  CHECK(writer.AddAudioTrack(two, 2));
  CHECK_FALSE(writer.RemoveAudioTrack(1));
  CHECK_FALSE(writer.RemoveAudioTrack(0));
  CHECK(writer.AudioQueueBlocks() == 80);
  CHECK(writer.RemoveAudioTrack(2));
  CHECK(writer.AudioQueueBlocks() == 40);
  writer.ListAudioTracks();
  CHECK(world.heard().listed == Lines{"7 " + two.text, "2 " + two.text});
}

void audioQueueEmpties(WriterWorld& world) {
  queueTwoTracks(world);
  CHECK(world.real().AudioQueueBlocks() == 60);
  world.real().ClearAudioQueue();
  CHECK(world.real().AudioQueueBlocks() == 0);
  world.real().ListAudioTracks();
  CHECK(world.heard().listed.empty());
}

void queuesAreAnInstancesOwn(WriterWorld& world) {
  queueTwoTracks(world);
  CHECK(world.real().AddDataFile(DiscPath("\\a"), world.plainFile("a", 5000)));
  CHECK(world.scratch().AudioQueueBlocks() == 0);
  CHECK(world.scratch().DataQueueBlocks() == 0);
  world.scratch().ClearAudioQueue();
  world.scratch().ClearDataQueue();
  CHECK(world.real().AudioQueueBlocks() == 60);
  CHECK(world.real().DataQueueBlocks() == 3);
}

void sizesCountInWholeBlocks(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  CHECK(writer.DataQueueBlocks() == 0);
  CHECK(writer.AddDataFile(DiscPath("\\full"), world.plainFile("full", 2048)));
  CHECK(writer.DataQueueBlocks() == 1);
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\more"), world.plainFile("more", 2049)));
  CHECK(writer.DataQueueBlocks() == 3);
  writer.ClearDataQueue();
  CHECK(writer.DataQueueBlocks() == 0);
}

void equalPathIsOneEntry(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath large = world.plainFile("large", 20480);
  const HostPath small = world.plainFile("small", 2048);
  CHECK(writer.AddDataFile(DiscPath("\\a.mp3"), large));
  CHECK(writer.AddDataFile(DiscPath("\\a.mp3"), small));
  CHECK(writer.DataQueueBlocks() == 1);
  CHECK(writer.AddDataFile(DiscPath("\\A.mp3"), large));
  CHECK(writer.DataQueueBlocks() == 11);
}

void missingSourceIsRefused(WriterWorld& world) {
  CHECK_FALSE(world.real().AddDataFile(DiscPath("\\a"), world.place("missing")));
  CHECK_FALSE(world.real().AddAudioTrack(world.place("missing"), 1));
  CHECK(world.real().DataQueueBlocks() == 0);
  CHECK(world.real().AudioQueueBlocks() == 0);
  CHECK_FALSE(world.real().RemoveDataFile(DiscPath("\\a")));
}

void onlyExactPathsAreRemoved(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath source = world.plainFile("a", 2048);
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\Eighties\\a.mp3"), source));
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\b.mp3"), source));
  for (const char* path : {"", "a.mp3", "\\a.mp3", "No Folder", "\\rock", "\\Rock\\", "Rock", "\\Rock\\a.mp3"})
    CHECK_FALSE(writer.RemoveDataFile(DiscPath(path)));
  CHECK(writer.DataQueueBlocks() == 2);
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock\\b.mp3")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock\\b.mp3")));
  CHECK(writer.DataQueueBlocks() == 1);
}

void foldersGoWhenNothingIsLeft(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath source = world.plainFile("a", 2048);
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\Eighties\\a.mp3"), source));
  CHECK(writer.AddDataFile(DiscPath("\\Rocky\\b.mp3"), source));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock\\Eighties")));
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock\\Eighties\\a.mp3")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock")));
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock\\Eighties")));
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock")));
}

void entryAddedAgainIsOneInItsFolder(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\a.mp3"), world.plainFile("large", 20480)));
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\a.mp3"), world.plainFile("small", 2048)));
  CHECK(writer.DataQueueBlocks() == 1);
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock\\a.mp3")));
  CHECK(writer.DataQueueBlocks() == 0);
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock\\a.mp3")));
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock")));
}

void refusedSourceLeavesTheEntry(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\a.mp3"), world.plainFile("a", 4096)));
  CHECK_FALSE(writer.AddDataFile(DiscPath("\\Rock\\a.mp3"), world.place("missing")));
  CHECK(writer.DataQueueBlocks() == 2);
  CHECK_FALSE(writer.AddDataFile(DiscPath("\\Jazz\\a.mp3"), world.place("missing")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Jazz")));
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock\\a.mp3")));
}

void missedRemovalLeavesBothEntries(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath source = world.plainFile("a", 2048);
  const std::string whole = "\\" + std::string(70, 'x') + ".mp3";
  const std::string cut = "\\" + std::string(60, 'x') + ".mp3";
  CHECK(writer.AddDataFile(DiscPath(whole), source));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath(cut)));
  CHECK(writer.AddDataFile(DiscPath(cut), source));
  CHECK(writer.DataQueueBlocks() == 2);
  CHECK(writer.RemoveDataFile(DiscPath(cut)));
  CHECK(writer.DataQueueBlocks() == 1);
  CHECK(writer.RemoveDataFile(DiscPath(whole)));
  CHECK(writer.DataQueueBlocks() == 0);
}

void foldersGoByTheirBytes(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath source = world.plainFile("a", 2048);
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\a.mp3"), source));
  CHECK(writer.AddDataFile(DiscPath("\\rock\\a.mp3"), source));
  CHECK(writer.AddDataFile(DiscPath("\\\\Rock\\a.mp3"), source));
  CHECK(writer.DataQueueBlocks() == 3);
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock\\a.mp3")));
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\\\Rock")));
  CHECK(writer.RemoveDataFile(DiscPath("\\\\Rock\\a.mp3")));
  CHECK(writer.RemoveDataFile(DiscPath("\\\\Rock")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\")));
  CHECK(writer.DataQueueBlocks() == 1);
}

void emptyFolderTakesFilesAgain(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath source = world.plainFile("a", 2048);
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\a.mp3"), source));
  CHECK(writer.RemoveDataFile(DiscPath("\\Rock\\a.mp3")));
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\b.mp3"), source));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock")));
  CHECK(writer.DataQueueBlocks() == 1);
}

void clearedDataQueueHasNoFolders(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const HostPath source = world.plainFile("a", 2048);
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\a.mp3"), source));
  writer.ClearDataQueue();
  CHECK(writer.DataQueueBlocks() == 0);
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock\\a.mp3")));
  CHECK_FALSE(writer.RemoveDataFile(DiscPath("\\Rock")));
  CHECK(writer.AddDataFile(DiscPath("\\Rock\\a.mp3"), source));
  CHECK(writer.DataQueueBlocks() == 1);
}

void settingsStay(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  CHECK_FALSE(writer.TestMode());
  CHECK_FALSE(writer.CloseDisc());
  CHECK_FALSE(writer.CacheAudioTracks());
  CHECK_FALSE(writer.CacheDataTrack());
  writer.SetTestMode(true);
  writer.SetCloseDisc(true);
  writer.SetCacheAudioTracks(true);
  CHECK(writer.TestMode());
  CHECK(writer.CloseDisc());
  CHECK(writer.CacheAudioTracks());
  CHECK_FALSE(writer.CacheDataTrack());
  writer.SetCacheDataTrack(true);
  writer.SetCacheAudioTracks(false);
  CHECK(writer.CacheDataTrack());
  CHECK_FALSE(writer.CacheAudioTracks());
  CHECK_FALSE(world.scratch().TestMode());
  CHECK_FALSE(world.scratch().CacheDataTrack());
}

}  // namespace

void scratchInstanceMeasures(WriterWorld& world) {
  CDWriterXP& scratch = world.scratch();
  CHECK(scratch.AddAudioTrack(world.audioFile("measured", 225), 1));
  CHECK(scratch.AudioQueueBlocks() == 225);
  CHECK(scratch.BlocksToTime(scratch.AudioQueueBlocks()) == "00:03:00");
  CHECK_FALSE(scratch.AddAudioTrack(world.plainFile("no music", 5000), 2));
  CHECK(scratch.AudioQueueBlocks() == 225);
  scratch.ClearAudioQueue();
  CHECK(scratch.AudioQueueBlocks() == 0);
}

std::vector<Rule> queueRules() {
  return {
      {"Audio tracks keep the numbers they were given and the order they came in", numbersStayAsGiven, {}},
      {"The first audio track of a number is removed, and an unknown number removes none", firstOfANumberIsRemoved, {}},
      {"A cleared audio queue is empty", audioQueueEmpties, {}},
      {"Each instance has its own queues", queuesAreAnInstancesOwn, {}},
      {"Files of the data queue count in whole blocks, and folders nothing", sizesCountInWholeBlocks, {}},
      {"An equal disc path is the same entry with a new source", equalPathIsOneEntry, {}},
      {"A source that is not there is refused", missingSourceIsRefused, {}},
      {"A file goes by its exact disc path alone", onlyExactPathsAreRemoved, {}},
      {"A folder goes once nothing is left in it", foldersGoWhenNothingIsLeft, {}},
      {"An equal disc path is one entry of its folder", entryAddedAgainIsOneInItsFolder, {}},
      {"A source that is refused leaves entry and folders as they were", refusedSourceLeavesTheEntry, {}},
      {"A removal that misses leaves its entry beside the next one", missedRemovalLeavesBothEntries, {}},
      {"A folder goes by its exact bytes, a doubled separator is no folder", foldersGoByTheirBytes, {}},
      {"A folder that was emptied takes files again", emptyFolderTakesFilesAgain, {}},
      {"A cleared data queue has no folders left", clearedDataQueueHasNoFolders, {}},
      {"Settings stay until they are changed, and are each instance's own", settingsStay, {}},
      {"An instance without a drive measures", scratchInstanceMeasures, {}},
  };
}

}  // namespace trackloom::contract
