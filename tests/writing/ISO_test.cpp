#include "writing/WrittenDialogue.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// An MP3 layout of which an image is to be made.
class Imaging : public Dialogue {
 public:
  Imaging() : Dialogue(Mp3Layout) {}

  std::string image() const { return folder / "mix.iso"; }
  /// The user asks for an image, and does in the dialog what the script says.
  void createImage(const std::function<void(frmISO&)>& script) {
    desk.expectForm<frmISO>("frmISO", [&](frmISO& form) { script(form); });
    click("mnuActionsCreate");
    CHECK(desk.finished());
  }
  void browse(frmISO& form, const std::string& name) {
    desk.expectFile(HostPath(name));
    form.cmdBrowse.click();
  }
  /// An image by the whole way, with the boxes that come before the last one; the dialog is gone behind it.
  void makeImage(const std::string& label = "", const Lines& boxes = {}) {
    createImage([&](frmISO& form) {
      browse(form, image());
      form.txtLabel.type(label);
      watch(form);
      heard();
      for (const std::string& box : boxes) desk.expectBox(box, BoxAnswer::Ok);
      desk.expectBox("Creation Complete", BoxAnswer::Ok);
      form.cmdOK.click();
    });
  }
};

}  // namespace

TEST_CASE("E103: An image is made only of a name that was chosen, whatever the label says") {
  Imaging machine;
  machine.createImage([&](frmISO& form) {
    form.txtLabel.type("Mix");
    CHECK_FALSE(form.cmdOK.Enabled);
    machine.desk.expectFile(std::nullopt);
    form.cmdBrowse.click();
    CHECK_FALSE(form.cmdOK.Enabled);
    machine.browse(form, "/x/mix");
    CHECK(form.cmdOK.Enabled);
    CHECK(form.txtImage.Text == std::string("/x/mix"));
    machine.desk.expectFile(std::nullopt);
    form.cmdBrowse.click();
    CHECK(form.txtImage.Text == std::string("/x/mix"));
    form.cmdCancel.click();
  });
  CHECK_FALSE(std::filesystem::exists("/x"));
}

TEST_CASE("An image file is asked for as one to be saved, with the question about overwriting and no name offered") {
  Imaging machine;
  machine.createImage([&](frmISO& form) {
    machine.browse(form, "/x/mix.iso");
    machine.browse(form, "/x/other.iso");
    form.closeBox();
  });
  REQUIRE(machine.desk.fileDialogs.size() == 2);
  for (const FileDialog& dialog : machine.desk.fileDialogs) {
    CHECK(dialog.mode == FileDialog::Mode::Save);
    CHECK(dialog.fileName.empty());
    CHECK(dialog.filter == "ISO Images (*.iso)|*.iso");
    CHECK(
        dialog.flags ==
        FileDialogFlags{
            .pathMustExist = true, .overwritePrompt = true, .hideReadOnly = true, .longNames = true, .explorer = true});
  }
}

TEST_CASE("An image is made as its dialogue has it") {
  Imaging machine;
  machine.window().ListView1.SetSubItem(2, 3, "\\Rock");
  machine.makeImage("  Mix ");
  CHECK(machine.mod().RecordConfirmed);
  checkDialogue(machine, "image-made");
}

TEST_CASE("E104: An empty label is passed on empty") {
  Imaging machine;
  machine.makeImage();
  const Lines heard = machine.heard();
  CHECK(std::count(heard.begin(), heard.end(), "CDR3.VolumeLabel=") == 1);
}

TEST_CASE("E105: A name of 64 characters stays whole in an image, one of 65 becomes 60 and .mp3 whatever it ended in") {
  Imaging machine;
  ListView& listing = machine.window().ListView1;
  listing.Clear();
  const std::string fits = std::string(60, 'f') + ".mp3";
  const std::string longer = std::string(60, 'l') + ".flac";
  for (const std::string& name : {fits, longer}) {
    machine.makeTrack(name, 1);
    listing.Add({name, {machine.folder.path() + "/music/", "", "No Folder"}});
  }
  machine.makeImage();
  const Lines heard = machine.heard();
  CHECK(std::count(heard.begin(), heard.end(), "CDR3.AddDataFile(\\" + fits + ", " + fits + ")") == 1);
  CHECK(std::count(heard.begin(), heard.end(),
                   "CDR3.AddDataFile(\\" + std::string(60, 'l') + ".mp3, " + longer + ")") == 1);
}

TEST_CASE("A missing track is told and takes the dialog away, and the image is made of the others all the same") {
  Imaging machine;
  std::filesystem::remove(machine.folder / "music/b.mp3");
  machine.engines.stage.data.erase(machine.folder / "music/b.mp3");
  machine.makeImage("Mix", {"Missing Track"});
  CHECK_FALSE(machine.mod().RecordConfirmed);
  checkDialogue(machine, "image-missing-track");
}

TEST_CASE("An image that fails is told, and behind it that its creation is complete, with or without the dialog") {
  const bool missing = GENERATE(false, true);
  Imaging machine;
  if (missing) std::filesystem::remove(machine.folder / "music/a.mp3");
  std::filesystem::create_directory(machine.image());
  machine.makeImage("", missing ? Lines{"Missing Track", "Write Error"} : Lines{"Write Error"});
  checkDialogue(machine, missing ? "image-failed-behind-missing-track" : "image-failed");
}

TEST_CASE("The name of the image file loses the blanks around it when the image is made") {
  Imaging machine;
  machine.createImage([&](frmISO& form) {
    machine.browse(form, " " + machine.image() + " ");
    machine.heard();
    machine.desk.expectBox("Creation Complete", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  const Lines heard = machine.heard();
  CHECK(std::count(heard.begin(), heard.end(), "CDR3.CreateIsoImage(mix.iso)") == 1);
}

TEST_CASE("While an image is made nothing can be pressed") {
  Imaging machine;
  machine.engines.stage.onLine = {};
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
    const frmISO& form = machine.program().forms().writing.frmISO.get();
    for (const Button* button : {&form.cmdBrowse, &form.cmdOK, &form.cmdCancel, &form.cmdHelp})
      CHECK_FALSE(button->Enabled);
  };
  machine.desk.expectForm<frmISO>("frmISO", [&](frmISO& form) {
    machine.browse(form, machine.image());
    machine.desk.expectBox("Creation Complete", BoxAnswer::Ok);
    form.cmdOK.click();
  });
  machine.click("mnuActionsCreate");
  CHECK(machine.desk.boxes.size() == 1);
}

TEST_CASE("A second image starts from an empty dialog and an empty queue of its own, and leaves the layout's alone") {
  Imaging machine;
  const std::int32_t queued = machine.cdr1().DataQueueBlocks();
  for (int round = 1; round <= 2; ++round)
    machine.createImage([&](frmISO& form) {
      CHECK(form.txtImage.Text == std::string());
      CHECK(form.CDR1->DataQueueBlocks() == 0);
      machine.browse(form, machine.image());
      machine.desk.expectBox("Creation Complete", BoxAnswer::Ok);
      form.cmdOK.click();
      CHECK(form.CDR1->DataQueueBlocks() == 5);
    });
  CHECK(machine.cdr1().DataQueueBlocks() == queued);
}

TEST_CASE(
    "The dialog that the writing of an image brought into being is the one that opens, with its bar as it was left") {
  Imaging machine;
  machine.record();
  machine.mod().IsoWriteActive = true;
  machine.cdr1().events.OnTrackCacheStart(1, 700);
  machine.cdr1().events.OnCacheProgress(300);
  const frmISO* const hidden = &machine.program().forms().writing.frmISO.get();
  machine.expectDone();
  machine.cdr1().events.OnOperationComplete();
  machine.createImage([&](frmISO& form) {
    CHECK(&form == hidden);
    CHECK(form.pbCache.Max() == 700);
    CHECK(form.pbCache.Value() == 300);
    form.cmdCancel.click();
  });
  machine.createImage([](frmISO& form) {
    CHECK(form.pbCache.Value() == 0);
    form.cmdCancel.click();
  });
}

TEST_CASE("Close withdraws the work, and the close box leaves it as it was") {
  Imaging machine;
  for (const bool button : {true, false}) {
    machine.mod().RecordConfirmed = true;
    machine.createImage([&](frmISO& form) { button ? form.cmdCancel.click() : form.closeBox(); });
    CHECK(machine.mod().RecordConfirmed == !button);
  }
}

}  // namespace trackloom
