#include "writing/WrittenDialogue.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// A user with an image of four blocks, who writes it to the disc in the drive.
class ImageWriting : public Dialogue {
 public:
  explicit ImageWriting(std::int16_t kind = Mp3Layout) : Dialogue(kind) {
    image = folder / "mix.iso";
    engines.stage.data[image] = 4;
    withStatus = false;
  }

  std::string image;

  void writeImage(BoxAnswer answer = BoxAnswer::Ok) {
    desk.expectFile(HostPath(image));
    desk.expectBox("Write ISO Image", answer);
    click("mnuFileWrite");
    CHECK(desk.finished());
  }
  void recordWith(const std::function<void(frmOptions&)>& choose) {
    record(choose);
    expectDone();
    finish();
    insert(*this);
    heard();
  }
  std::string state() {
    return std::string(mod().IsoWriteActive ? "image" : "no image") + (mod().WriteActive ? ", active" : ", idle") +
           ", copies " + std::to_string(mod().CopiesDone) + "/" + std::to_string(mod().CopiesWanted);
  }
};

}  // namespace

TEST_CASE("An image is written and its disc closed, as its dialogue has it") {
  ImageWriting machine;
  machine.withStatus = true;
  machine.cdr1().SetTestMode(false);
  machine.heard();
  machine.writeImage();
  CHECK(machine.state() == "image, active, copies 0/1");
  machine.expectDone();
  machine.finish();
  CHECK(machine.state() == "image, active, copies 1/1");
  checkDialogue(machine, "iso-written");
}

TEST_CASE("An image to be written is asked for as a file that is there") {
  ImageWriting machine;
  machine.writeImage(BoxAnswer::Cancel);
  machine.window().CD1.FileName = "an earlier one";
  machine.writeImage(BoxAnswer::Cancel);
  for (const FileDialog& dialog : machine.desk.fileDialogs) {
    CHECK(dialog.mode == FileDialog::Mode::Open);
    CHECK(dialog.fileName.empty());
    CHECK(dialog.filter == "ISO Images (*.iso)|*.iso");
    CHECK(dialog.flags ==
          FileDialogFlags{
              .pathMustExist = true, .fileMustExist = true, .hideReadOnly = true, .longNames = true, .explorer = true});
  }
}

TEST_CASE("The question before an image is written names it without the blanks around it, the engine gets them") {
  ImageWriting machine;
  machine.image = " " + machine.image + " ";
  machine.heard();
  machine.writeImage();
  CHECK(machine.desk.lastBox().text.starts_with(
      "You have chosen to write the following ISO image to disc: " + (machine.folder / "mix.iso") + ".\r\n\r\n"));
  const Lines heard = machine.heard();
  CHECK(heard.back() == "CDR1.WriteIsoImage( mix.iso )");
}

TEST_CASE("E106: An open disc takes an image, and only a closed one is refused") {
  ImageWriting machine;
  machine.engines.stage.disc = fakes::FakeDisc::closed();
  machine.desk.expectBox("Closed Disc", BoxAnswer::Ok);
  machine.click("mnuFileWrite");
  CHECK(machine.state() == "no image, idle, copies 0/0");
  machine.engines.stage.disc = fakes::FakeDisc::withOpenSession(DataBlocks);
  machine.writeImage();
  machine.expectDone();
  machine.finish();
  CHECK(machine.desk.finished());
}

TEST_CASE("E107: A file dialog that is cancelled leaves the main window as it was, and so does Cancel behind it") {
  const bool chosen = GENERATE(false, true);
  ImageWriting machine;
  machine.mod().CopiesDone = 3;
  machine.mod().CopiesWanted = 5;
  machine.desk.transcript.clear();
  if (chosen) {
    machine.writeImage(BoxAnswer::Cancel);
  } else {
    machine.desk.expectFile(std::nullopt);
    machine.click("mnuFileWrite");
  }
  CHECK(machine.desk.transcript.empty());
  CHECK(machine.window().visible());
  CHECK(machine.state() == "image, idle, copies 3/5");
}

TEST_CASE("A recording behind an image that was given up caches in its own window again") {
  ImageWriting machine(AudioLayout);
  machine.writeImage(BoxAnswer::Cancel);
  machine.withStatus = true;
  machine.heard();
  machine.record([](frmOptions& form) {
    form.optTestWrite.click();
    form.optTrack.click();
    form.chkCache.click();
  });
  machine.finish();
  machine.tick(machine.window().Timer1);
  machine.expectDone();
  machine.finish();
  checkDialogue(machine, "audio-tested-cached-open");
}

TEST_CASE("E108: An image behind a test alone is a test too, and is told like one") {
  ImageWriting machine;
  machine.recordWith([](frmOptions& form) { form.optTestOnly.click(); });
  machine.writeImage();
  machine.expectDone();
  machine.finish();
  CHECK(machine.cdr1().TestMode());
  checkDialogue(machine, "iso-behind-test");
}

TEST_CASE("E109: An image behind a close ends like a close, and leaves the status window over a hidden main window") {
  ImageWriting machine;
  machine.engines.stage.disc->lastSession = SessionIncomplete;
  machine.desk.expectForm<frmDiskInfo>("frmDiskInfo", [&](frmDiskInfo& form) {
    form.cmdCloseDisc.click();
    machine.desk.expectBox("Complete", BoxAnswer::Ok);
    machine.finish();
  });
  machine.click("mnuToolsInformation");
  insert(machine);
  machine.heard();
  machine.writeImage();
  machine.desk.expectBox("Complete", BoxAnswer::Ok);
  machine.finish();
  CHECK(machine.mod().CopiesDone == 0);
  CHECK_FALSE(machine.window().visible());
  CHECK(machine.status().visible());
  checkDialogue(machine, "iso-behind-close");

  // The way out is its Cancel, which is still on.
  machine.desk.expectBox("Cancel", BoxAnswer::Ok);
  machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
  machine.status().cmdCancel.click();
  CHECK(machine.window().visible());
}

TEST_CASE("Behind a recording that closed its disc, and a close, not even Cancel leads out of the window of an image") {
  ImageWriting machine;
  machine.recordWith([](frmOptions&) {});
  machine.mod().DiscCloseActive = true;
  machine.writeImage();
  machine.desk.expectBox("Complete", BoxAnswer::Ok);
  machine.finish();
  CHECK_FALSE(machine.status().cmdCancel.Enabled);
  machine.status().closeBox();
  CHECK(machine.status().visible());
  CHECK_FALSE(machine.window().visible());
}

TEST_CASE("E110: An image behind a test that failed or was cancelled ends in a real write of the layout") {
  const bool failed = GENERATE(true, false);
  ImageWriting machine;
  if (failed) machine.engines.stage.fault = fakes::FakeFault{};
  machine.record([](frmOptions& form) { form.optTestWrite.click(); });
  if (failed) {
    machine.expectError();
    machine.finish();
  } else {
    machine.desk.expectBox("Cancel", BoxAnswer::Ok);
    machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
    machine.status().cmdCancel.click();
  }
  machine.engines.stage.fault.reset();
  insert(machine);
  machine.heard();
  machine.writeImage();
  machine.finish();
  machine.tick(machine.window().Timer1);
  machine.expectDone();
  machine.finish();
  checkDialogue(machine, "iso-behind-failed-test");
}

TEST_CASE("Behind a failed test of an audio layout what follows an image has nothing to write, and says so") {
  ImageWriting machine(AudioLayout);
  machine.engines.stage.fault = fakes::FakeFault{};
  machine.record([](frmOptions& form) { form.optTestWrite.click(); });
  machine.expectError();
  machine.finish();
  machine.engines.stage.fault.reset();
  insert(machine);
  machine.writeImage();
  machine.finish();
  CHECK(machine.engines.stage.disc->status == DiscEmpty);
  machine.tick(machine.window().Timer1);
  machine.heard();
  machine.expectError();
  machine.finish();
  checkDialogue(machine, "error-in-phase");
}

TEST_CASE("An image that cannot be written is told like any write that fails") {
  ImageWriting machine;
  machine.engines.stage.data.clear();
  machine.writeImage();
  machine.heard();
  machine.expectError();
  machine.finish();
  checkDialogue(machine, "error-in-phase");
}

TEST_CASE("An image that is being written is cancelled in the words of a recording") {
  ImageWriting machine;
  machine.writeImage();
  machine.step(3);
  machine.heard();
  machine.desk.expectBox("Cancel", BoxAnswer::Cancel);
  machine.status().cmdCancel.click();
  machine.desk.expectBox("Cancel", BoxAnswer::Ok);
  machine.desk.expectBox("Operation Cancelled", BoxAnswer::Ok);
  machine.status().cmdCancel.click();
  checkDialogue(machine, "cancelled");
}

TEST_CASE("With ten audio tracks open an image is track 1 of 10, and with none it is told by whatever can be divided") {
  ImageWriting machine(AudioLayout);
  for (int track = 3; track <= 10; ++track) machine.addTrack(std::to_string(track) + ".mp3", 1);
  machine.writeImage();
  machine.step(2);
  Lines told;
  Label& tracks = machine.status().lblTracks;
  std::int32_t most = 0;
  const Connection watch = tracks.changed.connect([&] { told.push_back(tracks.Caption); });
  const Connection bar =
      machine.status().pbOverall.changed.connect([&] { most = std::max(most, machine.status().pbOverall.Value()); });
  machine.expectDone();
  machine.finish();
  CHECK(told == Lines{"1 of 10"});
  CHECK(most == 10);

  ImageWriting empty(AudioLayout);
  empty.window().ListView1.Clear();
  empty.writeImage();
  empty.expectDone();
  empty.finish();
  CHECK(empty.desk.finished());
}

TEST_CASE("The words behind a close go by the two flags, of which the first counts first") {
  struct Case {
    std::int16_t discOnly;
    bool both;
    const char* words;
  };
  const Case c = GENERATE(
      Case{0, false, "The last session has been closed on the inserted CD.  The CD is still open for further writing."},
      Case{0, true, "The last session and disc has been closed on the inserted CD."},
      Case{1, true, "The inserted disc has been closed for further writing."},
      Case{2, false,
           "The last session has been closed on the inserted CD.  The CD is still open for further writing."});
  ImageWriting machine;
  machine.mod().DiscCloseActive = true;
  machine.mod().DiscClosedOnly = c.discOnly;
  machine.mod().SessionAndDiscClosed = c.both;
  machine.heard();
  machine.desk.expectBox("Complete", BoxAnswer::Ok);
  machine.cdr1().events.OnOperationComplete();
  CHECK(machine.desk.lastBox().text == c.words);
  CHECK(machine.desk.lastBox().icon == BoxIcon::Information);
  CHECK(machine.heard().back() == "CDR1.EjectDisc");
  CHECK(machine.mod().CopiesDone == 0);
}

}  // namespace trackloom
