#include "model/AddTrack.h"

#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"
#include "model/TrackRow.h"
#include "writing/RecordFlow.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

class Layout : public fakes::LayoutMachine {
 public:
  using LayoutMachine::LayoutMachine;

  AddOutcome add(const std::string& path, const AddTrackRules& rules = PickedFiles) {
    const PathParts parts = splitPathText(path);
    return AddTrack(Batch(session(), Batch::Source::Dialog), Candidate{HostPath(path), parts.folder, parts.name},
                    rules);
  }
  AddOutcome addNew(const std::string& name, std::int32_t blocks, const AddTrackRules& rules = PickedFiles) {
    return add(makeTrack(name, blocks), rules);
  }
  ListView& rows() { return window().ListView1; }
};

}  // namespace

TEST_CASE("E039: A second file of the same name from another folder is silently ignored") {
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  Layout layout(kind);
  CHECK(layout.addNew("one/song.mp3", 100) == AddOutcome::Added);
  layout.engines.stage.take();
  CHECK(layout.addNew("two/SONG.MP3", 100) == AddOutcome::NotAdded);
  CHECK(layout.rows().Count() == 1);
  CHECK(layout.engines.stage.take().empty());
  CHECK(layout.desk.boxes.empty());
}

TEST_CASE("Names that differ in the case of an accented letter are duplicates under any locale") {
  Layout layout(AudioLayout);
  CHECK(layout.addNew("ÄRGER.mp3", 100) == AddOutcome::Added);
  CHECK(layout.addNew("x/ärger.mp3", 100) == AddOutcome::NotAdded);
}

TEST_CASE("E040: A 70-character name shows whole and is cut to 60 and .mp3 on the disc") {
  Layout layout(Mp3Layout);
  const std::string start(60, 'n');
  CHECK(layout.addNew(start + "abcdef.mp3", 7) == AddOutcome::Added);
  CHECK(layout.rows().Item(1).Text == start + "abcdef.mp3");
  CHECK(layout.cdr1().dataQueue.contains("\\" + start + ".mp3"));

  CHECK(layout.addNew(start + "uvwxyz.mp3", 7) == AddOutcome::Added);
  CHECK(layout.rows().Count() == 2);
  CHECK(layout.cdr1().dataQueue.files().size() == 1);
}

TEST_CASE("E041: A name of 64 characters stays whole on the disc and one of 65 is cut") {
  Layout layout(Mp3Layout);
  const std::string fits = std::string(58, 'u') + "ä.mp3x";
  REQUIRE(DiscName(std::string(60, 'a') + ".mp3") == std::string(60, 'a') + ".mp3");
  CHECK(DiscName(std::string(61, 'a') + ".mp3") == std::string(60, 'a') + ".mp3");
  CHECK(DiscName(fits) == fits);
  layout.addNew(std::string(60, 'b') + ".mp3", 1);
  layout.addNew(std::string(61, 'c') + ".mp3", 1);
  CHECK(layout.cdr1().dataQueue.contains("\\" + std::string(60, 'b') + ".mp3"));
  CHECK(layout.cdr1().dataQueue.contains("\\" + std::string(60, 'c') + ".mp3"));
}

TEST_CASE("A cut at 60 characters counts UTF-16 units and leaves whole characters") {
  std::string umlauts;
  for (int i = 0; i < 65; ++i) umlauts += "ü";
  std::string sixty;
  for (int i = 0; i < 60; ++i) sixty += "ü";
  CHECK(DiscName(umlauts) == sixty + ".mp3");
  const std::string notes = std::string(59, 'x') + "\xF0\x9D\x84\x9E" + std::string(9, 'y');
  CHECK(DiscName(notes) == std::string(59, 'x') + ".mp3");
}

TEST_CASE("E042: On an MP3 layout a file that is no audio is listed with the time of an empty queue") {
  Layout layout(Mp3Layout);
  layout.addNew("music.mp3", 4500);
  layout.engines.stage.data["/m/odd.mp3"] = 5;
  CHECK(layout.add("/m/odd.mp3") == AddOutcome::Added);
  REQUIRE(layout.rows().Count() == 2);
  CHECK(layout.rows().Item(2).Text == "odd.mp3");
  CHECK(layout.rows().SubItem(1, TimeColumn) == "01:00:00");
  CHECK(layout.rows().SubItem(2, TimeColumn) == "00:00:00");
  CHECK(layout.rows().SubItem(2, FolderColumn) == "No Folder");
  CHECK(layout.desk.boxes.empty());
}

TEST_CASE("A track is measured by itself, whatever was measured before it") {
  Layout layout(AudioLayout);
  const HostPath first(layout.makeTrack("a.mp3", 4500));
  const HostPath second(layout.makeTrack("b.mp3", 75));
  CHECK(MeasureTrack(layout.session(), first) == "01:00:00");
  layout.engines.stage.take();
  CHECK(MeasureTrack(layout.session(), second) == "00:01:00");
  CHECK(layout.engines.stage.take() ==
        std::vector<std::string>{"CDR2.ClearAudioQueue", "CDR2.AddAudioTrack(" + second.text + ", 1)"});
}

TEST_CASE("E043: The first track of a new audio layout has the number 1, and its row the tag 2") {
  Layout layout(AudioLayout);
  layout.addNew("a.mp3", 4500);
  CHECK(layout.cdr1().audioQueue.at(0).number == 1);
  CHECK(layout.rows().Item(1).Tag == 2);
  CHECK(layout.rows().Item(1).SmallIcon == 1);
  CHECK(layout.rows().SubItem(1, LocationColumn) == layout.folder.path() + "/music/");
  CHECK(layout.rows().SubItem(1, TimeColumn) == "01:00:00");
}

TEST_CASE("E044: Too big on the first candidate leaves no row and LayoutSaved as it was") {
  Layout layout(AudioLayout, 1000);
  layout.mod().LayoutSaved = true;
  layout.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
  layout.addTrack("long.mp3", 851);
  CHECK(layout.rows().Count() == 0);
  CHECK(layout.mod().LayoutSaved);
  CHECK(layout.cdr1().audioQueue.empty());
  CHECK(layout.mod().NextTrackNumber == 1);
  CHECK(layout.desk.lastBox().text ==
        "The current track being added will cause you to exceed the amount of space available for the current "
        "layout.\r\n\r\nCheck the track time (Audio CD) or size (MP3 CD) on the status bar.  Track addition will now "
        "stop.");
}

TEST_CASE("E045: A total that equals the meter's maximum still fits") {
  const std::int16_t kind = GENERATE(AudioLayout, Mp3Layout);
  Layout layout(kind, 1000);
  CHECK(layout.addNew("a.mp3", 850) == AddOutcome::Added);
  CHECK_FALSE(layout.mod().TrackWontFit);
}

TEST_CASE("E046: Near the limit a refused candidate takes the track before it out of the queue") {
  Layout layout(AudioLayout, 1000);
  layout.addNew("a.mp3", 600);
  layout.addNew("b.mp3", 99);
  REQUIRE(layout.cdr1().audioQueue.size() == 2);
  layout.desk.expectBox("Invalid Audio File", BoxAnswer::Ok);
  layout.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
  layout.engines.stage.take();
  CHECK(layout.add("/m/broken.mp3") == AddOutcome::LayoutTooBig);
  CHECK(layout.engines.stage.take() ==
        Lines{"CDR1.AddAudioTrack(/m/broken.mp3, 3)", "CDR1.ListAudioTracks", "CDR1.RemoveAudioTrack(2)"});
  CHECK(layout.rows().Count() == 2);
  CHECK(layout.cdr1().audioQueue.size() == 1);

  StartDiscWrite(layout.session(), layout.program().forms().writing);
  REQUIRE(layout.cdr1().audioQueue.size() == 2);
  CHECK(layout.cdr1().audioQueue.at(1).number == 2);
}

TEST_CASE("An overflow of an MP3 layout asks the queue for the bare name, so the file goes on counting") {
  Layout layout(Mp3Layout, 1000);
  layout.desk.expectBox("Layout Too Big", BoxAnswer::Ok);
  const std::string path = layout.makeTrack("big.mp3", 900);
  CHECK(layout.add(path) == AddOutcome::LayoutTooBig);
  CHECK(layout.engines.stage.take() ==
        Lines{"CDR1.AddDataFile(\\big.mp3, " + path + ")", "CDR1.RemoveDataFile(big.mp3)"});
  CHECK(layout.cdr1().DataQueueBlocks() == 900);
}

TEST_CASE("A refusal names the path and tells apart picked and dropped files") {
  Layout layout(AudioLayout);
  layout.desk.expectBox("Invalid Audio File", BoxAnswer::Ok);
  CHECK(layout.add("/m/it's.mp3") == AddOutcome::NotAdded);
  CHECK(layout.desk.lastBox().text ==
        "'/m/it's.mp3' could not be inserted into the Audio Queue.\r\n\r\nEnsure this is a valid 44khz Stereo Audio "
        "file (MP3 or WAV) and the file is not corrupt.");
  CHECK(layout.desk.lastBox().buttons == BoxButtons::Ok);
  CHECK(layout.desk.lastBox().icon == BoxIcon::Exclamation);
  layout.desk.expectBox("Invalid Audio File", BoxAnswer::Ok);
  layout.add("/m/x.mp3", DroppedFiles);
  CHECK(layout.desk.lastBox().text ==
        "'/m/x.mp3' could not be inserted into the Audio Queue.\r\n\r\nEnsure this is a valid 44khz Audio file (MP3 or "
        "WAV) and the file is not corrupt.");
}

TEST_CASE("A data file that cannot be read is refused in its own words") {
  Layout layout(Mp3Layout);
  layout.desk.expectBox("Unable to Add File", BoxAnswer::Ok);
  CHECK(layout.add("/m/gone.mp3") == AddOutcome::NotAdded);
  CHECK(layout.desk.lastBox().text ==
        "'/m/gone.mp3' could not be inserted into the Data Queue.\r\n\r\nThe data from the file could not be read "
        "properly.  Ensure the file is not corrupt and can be read by other applications.");
}

TEST_CASE("After a refusal the batch goes on") {
  Layout layout(AudioLayout);
  const std::string good = layout.makeTrack("good.mp3", 10);
  layout.desk.expectBox("Invalid Audio File", BoxAnswer::Ok);
  layout.rows().dropFiles({"/m/bad.mp3", good});
  CHECK(layout.rows().Count() == 1);
}

TEST_CASE("The tracks of a layout file meet no duplicate test, no limit and no shortening") {
  Layout layout(Mp3Layout, 10);
  const std::string name = std::string(70, 'x') + ".mp3";
  const std::string path = layout.makeTrack(name, 900);
  Candidate candidate{HostPath(path), layout.folder.path() + "/music/", name, "\\Rock"};
  const Batch opening(layout.session(), Batch::Source::LayoutFile);
  CHECK(AddTrack(opening, candidate, LayoutFileTracks) == AddOutcome::Added);
  CHECK(AddTrack(opening, candidate, LayoutFileTracks) == AddOutcome::Added);
  CHECK(layout.cdr1().dataQueue.contains("\\Rock\\" + name));
  CHECK(layout.rows().SubItem(1, FolderColumn) == "\\Rock");
}

TEST_CASE("Each added row lets pending events run, and a refused one does not") {
  Layout layout(AudioLayout);
  layout.pump.pumped = 0;
  layout.addNew("a.mp3", 10);
  layout.addNew("b.mp3", 10);
  layout.addNew("A.mp3", 10);
  CHECK(layout.pump.pumped == 2);
}

TEST_CASE("SplitPath leaves the folder behind, and a path without a separator changes nothing") {
  Layout layout(AudioLayout);
  CHECK(SplitPath(layout.session(), "/a/b.mp3") == "b.mp3");
  CHECK(layout.mod().PathFolder == "/a/");
  CHECK(SplitPath(layout.session(), "b.mp3").empty());
  CHECK(layout.mod().PathFolder == "/a/");
  CHECK(SplitPath(layout.session(), "/a/b.mp3 ") == "b.mp3 ");
  CHECK(layout.mod().PathFolder == "/a");
}

TEST_CASE("A sorted MP3 layout takes each new row at its place") {
  Layout layout(Mp3Layout);
  REQUIRE(layout.rows().Sorted());
  for (const char* name : {"c.mp3", "a.mp3", "B.mp3"}) layout.addNew(name, 1);
  CHECK(layout.rows().Item(1).Text == "a.mp3");
  CHECK(layout.rows().Item(2).Text == "B.mp3");
  CHECK(layout.rows().Item(3).Text == "c.mp3");
}

TEST_CASE("A command that closes the layout while a batch lets events run leaves nothing of the batch") {
  Layout layout(AudioLayout);
  const std::string first = layout.makeTrack("a.mp3", 10);
  const std::string second = layout.makeTrack("b.mp3", 10);
  layout.mod().Options.PromptSave = 0;
  layout.pump.onPump = [&] {
    layout.pump.onPump = {};
    layout.click("mnuFileClose");
  };
  layout.rows().dropFiles({first, second});
  CHECK(layout.rows().Count() == 0);
  CHECK(layout.cdr1().audioQueue.empty());
}

}  // namespace trackloom
