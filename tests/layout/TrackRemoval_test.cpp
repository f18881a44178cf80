#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"

namespace trackloom {

using fakes::LayoutMachine;
using Lines = std::vector<std::string>;

namespace {

/// Selects a row and removes it by the command.
void remove(LayoutMachine& machine, int row, BoxAnswer answer = BoxAnswer::Ok) {
  machine.window().ListView1.SelectRow(row);
  machine.desk.expectBox("Remove Track", answer);
  machine.engines.stage.take();
  machine.click("Delete");
}

Lines names(LayoutMachine& machine) {
  Lines all;
  for (int row = 1; row <= machine.window().ListView1.Count(); ++row)
    all.push_back(machine.window().ListView1.Item(row).Text);
  return all;
}

std::vector<std::int16_t> queueNumbers(LayoutMachine& machine) {
  std::vector<std::int16_t> all;
  for (const auto& entry : machine.cdr1().audioQueue.entries()) all.push_back(entry.number);
  return all;
}

/// Puts the track of a row into a folder of the disc, as the dialog does.
void putInto(LayoutMachine& machine, int row, const std::string& folder) {
  ListView& listing = machine.window().ListView1;
  const std::string name = listing.Item(row).Text;
  machine.cdr1().RemoveDataFile(DiscPath("\\" + name));
  machine.cdr1().AddDataFile(DiscPath(folder + "\\" + name), HostPath(machine.folder / ("music/" + name)));
  listing.SetSubItem(row, 3, folder);
}

}  // namespace

TEST_CASE("E074: A removed track is taken out of the queue by the engine's own number, whatever gaps there are") {
  LayoutMachine machine(AudioLayout);
  for (const char* name : {"a.mp3", "b.mp3", "c.mp3"}) machine.addTrack(name, 10);
  remove(machine, 2);
  CHECK(queueNumbers(machine) == std::vector<std::int16_t>{1, 3});
  CHECK(machine.mod().NextTrackNumber == 4);
  remove(machine, 2);
  CHECK(names(machine) == Lines{"a.mp3"});
  CHECK(queueNumbers(machine) == std::vector<std::int16_t>{1});
  CHECK(machine.enabled("Delete"));
  remove(machine, 1);
  CHECK_FALSE(machine.enabled("Delete"));
}

TEST_CASE("Behind a removed track the next one is selected, or the last, so that several can go") {
  LayoutMachine machine(AudioLayout);
  for (const char* name : {"a.mp3", "b.mp3", "c.mp3", "d.mp3"}) machine.addTrack(name, 10);
  ListView& listing = machine.window().ListView1;
  remove(machine, 2);
  CHECK(listing.SelectedRow() == 2);
  CHECK(listing.Item(2).Text == "c.mp3");
  remove(machine, 3);
  CHECK(listing.SelectedRow() == 2);
  remove(machine, listing.SelectedRow());
  remove(machine, listing.SelectedRow());
  CHECK(listing.Count() == 0);
  CHECK(listing.SelectedRow() == 0);
}

TEST_CASE("E075: A row that the queue does not know takes the track out whose number was left over") {
  LayoutMachine machine(AudioLayout);
  for (const char* name : {"a.mp3", "b.mp3", "c.mp3"}) machine.addTrack(name, 10);
  machine.window().QueueIndexOfSelection = 3;
  machine.cdr1().RemoveAudioTrack(1);
  remove(machine, 1);
  CHECK(names(machine) == Lines{"b.mp3", "c.mp3"});
  CHECK(queueNumbers(machine) == std::vector<std::int16_t>{2});
}

TEST_CASE("E076: The last track of a disc folder takes the folder out of the queue, one of two does not") {
  LayoutMachine machine(Mp3Layout);
  for (const char* name : {"a.mp3", "b.mp3"}) machine.addTrack(name, 10);
  putInto(machine, 1, "\\Rock");
  putInto(machine, 2, "\\Rock");
  remove(machine, 1);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.RemoveDataFile(\\Rock\\a.mp3)", "CDR1.MediaLoaded"});
  remove(machine, 1);
  CHECK(machine.engines.stage.take() ==
        Lines{"CDR1.RemoveDataFile(\\Rock\\b.mp3)", "CDR1.RemoveDataFile(\\Rock)", "CDR1.MediaLoaded"});
}

TEST_CASE("E080: A long name of an opened layout is missed in the queue, and its row goes all the same") {
  LayoutMachine machine(Mp3Layout);
  const std::string name = std::string(70, 'x') + ".mp3";
  machine.addTrack(name, 10);
  machine.cdr1().RemoveDataFile(DiscPath("\\" + std::string(60, 'x') + ".mp3"));
  machine.cdr1().AddDataFile(DiscPath("\\" + name), HostPath(machine.folder / ("music/" + name)));
  remove(machine, 1);
  CHECK(machine.window().ListView1.Count() == 0);
  CHECK(machine.cdr1().dataQueue.contains("\\" + name));
}

TEST_CASE("The word for the root is asked for like a folder when its last track goes, and nothing comes of it") {
  LayoutMachine machine(Mp3Layout);
  machine.addTrack("a.mp3", 10);
  remove(machine, 1);
  CHECK(machine.engines.stage.take() ==
        Lines{"CDR1.RemoveDataFile(\\a.mp3)", "CDR1.RemoveDataFile(No Folder)", "CDR1.MediaLoaded"});
}

TEST_CASE("Cancel keeps the track, and a removal makes the layout unsaved") {
  LayoutMachine machine(AudioLayout);
  machine.addTrack("a.mp3", 10);
  machine.mod().LayoutSaved = true;
  remove(machine, 1, BoxAnswer::Cancel);
  CHECK(names(machine) == Lines{"a.mp3"});
  CHECK(machine.mod().LayoutSaved);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.MediaLoaded"});
  remove(machine, 1);
  CHECK_FALSE(machine.mod().LayoutSaved);
}

TEST_CASE(
    "Without a selected row the removal still asks, takes the track of the left-over number, and marks a change") {
  LayoutMachine machine(AudioLayout);
  for (const char* name : {"a.mp3", "b.mp3"}) machine.addTrack(name, 10);
  machine.mod().LayoutSaved = true;
  machine.window().QueueIndexOfSelection = 2;
  remove(machine, 0);
  CHECK(names(machine) == Lines{"a.mp3", "b.mp3"});
  CHECK(queueNumbers(machine) == std::vector<std::int16_t>{1});
  CHECK_FALSE(machine.mod().LayoutSaved);
}

TEST_CASE("The left-over number can be one of an earlier layout") {
  LayoutMachine machine(AudioLayout);
  machine.mod().Options.PromptSave = 0;
  for (const char* name : {"a.mp3", "b.mp3"}) machine.addTrack(name, 10);
  remove(machine, 2);
  machine.newLayout(AudioLayout);
  for (const char* name : {"c.mp3", "d.mp3", "e.mp3"}) machine.addTrack(name, 10);
  remove(machine, 0);
  CHECK(names(machine) == Lines{"c.mp3", "d.mp3", "e.mp3"});
  CHECK(queueNumbers(machine) == std::vector<std::int16_t>{1, 3});
}

TEST_CASE("The removal tells the meter before the commands") {
  LayoutMachine machine(AudioLayout);
  machine.addTrack("a.mp3", 10);
  bool meterChanged = false;
  const Connection watch = machine.window().Progress1.changed.connect([&] {
    meterChanged = true;
    CHECK(machine.enabled("Delete"));
  });
  remove(machine, 1);
  CHECK(meterChanged);
  CHECK_FALSE(machine.enabled("Delete"));
}

TEST_CASE("A disc folder stays while any other track is in it, before or behind the removed one") {
  for (const int removed : {1, 2, 3}) {
    LayoutMachine machine(Mp3Layout);
    for (const char* name : {"a.mp3", "b.mp3", "c.mp3"}) machine.addTrack(name, 10);
    const int other = removed == 2 ? 1 : 4 - removed;
    putInto(machine, removed, "\\Rock");
    putInto(machine, other, "\\Rock");
    const std::string name = machine.window().ListView1.Item(removed).Text;
    remove(machine, removed);
    CHECK(machine.engines.stage.take() == Lines{"CDR1.RemoveDataFile(\\Rock\\" + name + ")", "CDR1.MediaLoaded"});
  }
}

TEST_CASE("Disc folders that differ in case are two folders") {
  LayoutMachine machine(Mp3Layout);
  for (const char* name : {"a.mp3", "b.mp3"}) machine.addTrack(name, 10);
  putInto(machine, 1, "\\Rock");
  putInto(machine, 2, "\\rock");
  remove(machine, 1);
  CHECK(machine.engines.stage.take() ==
        Lines{"CDR1.RemoveDataFile(\\Rock\\a.mp3)", "CDR1.RemoveDataFile(\\Rock)", "CDR1.MediaLoaded"});
}

TEST_CASE("A removed track keeps the tags and places of the others, and the next number of the queue") {
  LayoutMachine machine(AudioLayout);
  for (const char* name : {"a.mp3", "b.mp3", "c.mp3"}) machine.addTrack(name, 10);
  remove(machine, 1);
  CHECK(machine.engines.stage.take() == Lines{"CDR1.ListAudioTracks", "CDR1.RemoveAudioTrack(1)", "CDR1.MediaLoaded"});
  CHECK(machine.window().ListView1.Item(1).Tag == 3);
  CHECK(machine.window().ListView1.Item(2).Tag == 4);
  CHECK(machine.mod().NextTrackNumber == 4);
}

TEST_CASE("A step of the removal that fails is skipped, and the row goes all the same") {
  LayoutMachine audio(AudioLayout);
  audio.addTrack("a.mp3", 10);
  audio.engines.stage.broken = {"CDR1.ListAudioTracks"};
  remove(audio, 1);
  CHECK(names(audio).empty());
  CHECK_FALSE(audio.mod().LayoutSaved);
  LayoutMachine mp3(Mp3Layout);
  mp3.addTrack("a.mp3", 10);
  mp3.engines.stage.broken = {"CDR1.RemoveDataFile(\\a.mp3)", "CDR1.RemoveDataFile(No Folder)"};
  remove(mp3, 1);
  CHECK(names(mp3).empty());
}

}  // namespace trackloom
