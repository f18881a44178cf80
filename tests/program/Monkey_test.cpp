#include <catch2/catch.hpp>
#include <random>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/ControlVisitor.h"
#include "controls/FolderTreeview.h"
#include "controls/OptionButton.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"
#include "controls/VScrollBar.h"
#include "fakes/FakeDrives.h"
#include "fakes/FakeFolderListing.h"
#include "fakes/FakePrintControls.h"
#include "fakes/FakeRipping.h"
#include "fakes/FakeWorld.h"
#include "fakes/FakeWriter.h"
#include "fakes/TempFolder.h"
#include "model/MainBars.h"
#include "shell/Program.h"

namespace trackloom {

using fakes::EndOfProcess;
using fakes::FakeCommonControls;
using fakes::FakeDisc;
using fakes::FakeEngines;
using fakes::FakeHelp;
using fakes::FakeOpener;
using fakes::FakeProcess;
using fakes::FakeWriter;
using fakes::TempFolder;

namespace {

/// Presses, types, drops and answers at random, also from inside the program's own waits, while discs come and go and
/// the engine says whatever it likes. What a user cannot reach, the monkey cannot reach.
class Monkey final : public FormHost, public MessageBoxes, public FileDialogs, public EventPump, public ControlVisitor {
 public:
  explicit Monkey(unsigned seed) : random_(seed) {
    process_.folder = folder_.path();
    folder_.write("NoShow.dat", "");
    for (int file = 0; file < 30; ++file) {
      const std::string name = std::to_string(file) + (file % 3 == 0 ? ".wav" : ".mp3");
      folder_.write("music/" + name, "x");
      files_.push_back(folder_ / ("music/" + name));
      if (file % 7 == 0) continue;
      engines_.stage.audio[files_.back()] = 1 << (file % 14);
      engines_.stage.data[files_.back()] = 1 << (file % 14);
    }
    engines_.stage.drives.push_back({"E", "ACME", "Other", 0, false, true});
  }

  /// The status with which the program ended, 0 where it still runs.
  int play(int steps) {
    try {
      run([this] {
        program_.start();
        program_.forms().shell.frmOpen->Timer1.tick();
        window().activated();
      });
      for (int step = 0; step < steps; ++step) run([this] { act(); });
    } catch (const EndOfProcess& end) {
      return end.status;
    }
    return 0;
  }
  const std::string& lastBox() const { return lastBox_; }

  void show(Form& form) override {
    hide(form);
    shown_.push_back(&form);
  }
  void hide(Form& form) override { std::erase(shown_, &form); }
  void discard(Form& form) override { hide(form); }
  void repaint(Control&) override {}
  void repaint(Form&) override {}
  void showModal(Form& form, Form*) override {
    modals_.push_back(&form);
    for (int tries = modals_.size() < 4 ? 40 : 0; tries > 0 && form.visible(); --tries) run([&] { poke(form); });
    while (form.visible()) run([&] { leave(form); });
    modals_.pop_back();
  }

  BoxAnswer show(const MessageBox& box) override {
    lastBox_ = box.title + ": " + box.text;
    ++boxes_;
    if (boxes_ < 4) run([this] { happen(); });
    --boxes_;
    const bool first = chance(2);
    switch (box.buttons) {
      case BoxButtons::Ok:
        return BoxAnswer::Ok;
      case BoxButtons::OkCancel:
        return first ? BoxAnswer::Ok : BoxAnswer::Cancel;
      case BoxButtons::YesNo:
        return first ? BoxAnswer::Yes : BoxAnswer::No;
      case BoxButtons::RetryCancel:
        return first ? BoxAnswer::Retry : BoxAnswer::Cancel;
      case BoxButtons::YesNoCancel:
        break;
    }
    return first ? BoxAnswer::Cancel : BoxAnswer::No;
  }

  std::optional<HostPath> choose(const FileDialog&) override {
    if (chance(3)) return std::nullopt;
    return HostPath(chance(4) ? folder_.path() : chance(2) ? folder_ / "mix.iso" : files_[fileNumber()]);
  }

  std::optional<HostPath> browseForFolder(const std::string&) override {
    return chance(3) ? std::nullopt : std::optional(HostPath(folder_.path()));
  }

  void pumpEvents() override {
    if (++pumps_ < 3 && chance(4)) run([this] { act(); });
    --pumps_;
  }

  void visit(Button& control) override { control.click(); }
  void visit(CheckBox& control) override { control.click(); }
  void visit(ComboBox& control) override { control.choose(below(static_cast<int>(control.items().size()) + 1) - 1); }
  void visit(OptionButton& control) override { control.click(); }
  void visit(TabStrip& control) override { control.choose(below(2) + 1); }
  void visit(VScrollBar& control) override { control.scrollTo(below(4) + 1); }
  void visit(FolderTreeview& control) override { control.choose(folder_ / (chance(3) ? "Layouts" : "music")); }
  void visit(TextBox& control) override {
    const char* texts[] = {"", "  ", "Mix", "a/b", "\"", "\xFF", "Rescued layout 1", "3"};
    control.focus();
    control.type(texts[below(8)]);
  }
  void visit(ListView& control) override {
    const int row = below(control.Count() + 1);
    if (chance(2)) return control.dropFiles({files_[fileNumber()], files_[fileNumber()], folder_ / "none.mp3"});
    if (row == 0) return;
    if (control.style().editable && chance(3)) return control.edit(row, chance(2) ? "a/b" : "");
    if (control.style().checkBoxes) return control.check(row, chance(2));
    chance(2) ? control.doubleClick(row) : control.SelectRow(row);
  }
  void visit(DockStudio& control) override {
    if (chance(20)) return control.chooseEntry("cboMainDrive", below(2) + 1);
    if (chance(9)) return control.openMenu("mnuTools");
    const std::string name = anyCommand();
    // These two stand in the menu that CDFolder opens.
    if (name.starts_with("Show") && !control.tool("CDFolder").Enabled) return;
    if (name != "mnuFileExit" || chance(50)) control.click(name);
  }
  void visit(Frame&) override {}
  void visit(Label&) override {}
  void visit(PictureBox&) override {}
  void visit(ProgressBarEx&) override {}
  void visit(StatusBar&) override {}
  void visit(Timer& control) override { control.tick(); }

 private:
  ListingWindow& window() { return program_.session().frmListing(); }
  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  bool chance(int oneIn) { return below(oneIn) == 0; }
  std::size_t fileNumber() { return static_cast<std::size_t>(below(30)); }
  void run(const std::function<void()>& handler) { program_.run(handler); }
  /// Often one that makes something of a layout, which all others together would seldom leave open.
  std::string anyCommand() {
    static const std::vector<ToolDesign> tools = mainTools();
    const char* favourites[] = {"Record", "Record", "Record", "AddFiles", "Delete", "mnuFileSave"};
    if (chance(2)) return favourites[below(6)];
    return tools[static_cast<std::size_t>(below(static_cast<int>(tools.size())))].name;
  }

  void poke(Form& form) {
    const auto alive = form.keepAlive();
    const auto& controls = form.controls();
    // The page of a listing has none.
    if (!controls.empty()) controls[static_cast<std::size_t>(below(static_cast<int>(controls.size())))]->accept(*this);
    if (chance(&form == &window() ? 500 : 30)) form.closeBox();
  }

  /// A dialog cannot be left while the drive erases or closes a disc.
  void leave(Form& form) {
    form.closeBox();
    goOnRipping();
    listen();
    if (form.visible() && doing_ != Doing::Nothing) speak();
  }

  /// What the user can reach now: the topmost modal form, or any window that shows.
  void act() {
    happen();
    if (!modals_.empty() && modals_.back()->visible()) return poke(*modals_.back());
    if (shown_.empty()) return;
    Form* const form = shown_[static_cast<std::size_t>(below(static_cast<int>(shown_.size())))];
    if (form == &window() && !chance(4)) return visit(window().DockStudio1);
    poke(*form);
  }

  /// What happens without the user: discs come and go, time passes, and the engine speaks of a write that runs.
  void happen() {
    if (chance(40)) engines_.stage.disc.reset();
    if (chance(8))
      engines_.stage.disc = FakeDisc{chance(4) ? below(3) : 0, chance(4), chance(9) ? below(2) : 20000, 20000};
    if (chance(3)) window().Timer1.tick();
    if (chance(3)) window().Timer2.tick();
    if (chance(2)) goOnRipping();
    listen();
    if (doing_ != Doing::Nothing) speak();
  }
  void goOnRipping() {
    if (chance(9)) changeRipDisc();
    RipperForms& forms = program_.forms().ripper;
    if (!forms.frmRipMain.exists()) return;
    auto& engine = dynamic_cast<fakes::FakeRipper&>(*forms.frmRipMain->CDRipperX1);
    if (engine.busy()) engine.step();
  }
  void changeRipDisc() {
    fakes::RipperStage& stage = ripping_.stage;
    stage.disc.reset();
    if (chance(4)) return;
    stage.disc = {{0, 75, chance(2)}, {75, 75}, {150, 0}};
    stage.matches.clear();
    if (chance(2)) stage.matches = {{"A/B", "", "rock", "1999", {{"One"}, {"a/b/c"}}}};
    stage.broken.clear();
    const char* calls[] = {"ReadTOC", "TrackCount", "MaxSpeed", "SetSpeed"};
    if (chance(4)) stage.broken = {std::string("CDRipperX1.") + calls[below(4)]};
    stage.trouble.clear();
    if (chance(3)) stage.trouble[1] = {below(16)};
  }
  /// What the engine was told to do, and has not yet had its last event of.
  void listen() {
    for (const std::string& call : engines_.stage.take()) {
      if (call == "CDR1.StartWrite" || call.starts_with("CDR1.WriteIsoImage")) doing_ = Doing::Write;
      if (call.starts_with("CDR1.EraseDisc")) doing_ = Doing::Erase;
      if (call.starts_with("CDR1.CloseLastSession")) doing_ = Doing::Close;
      if (call == "CDR1.AbortWrite") doing_ = Doing::Nothing;
    }
  }
  void speak() {
    if (doing_ == Doing::Write) return speakOfWrite();
    CDWriterEvents& events = dynamic_cast<FakeWriter&>(*window().CDR1).events;
    const bool erase = doing_ == Doing::Erase;
    if (chance(2))
      return erase ? events.OnEraseStarted() : chance(2) ? events.OnSessionClosing() : events.OnDiscClosing();
    doing_ = Doing::Nothing;
    if (chance(3)) return events.OnWriteError(below(5), 7);
    erase ? events.OnEraseComplete() : events.OnOperationComplete();
  }
  void speakOfWrite() {
    CDWriterEvents& events = dynamic_cast<FakeWriter&>(*window().CDR1).events;
    const auto track = static_cast<std::int16_t>(below(3));
    switch (below(11)) {
      case 0:
        return events.OnWriteStarting();
      case 1:
        return events.OnTrackCacheStart(track, below(9));
      case 2:
        return events.OnCacheProgress(below(9));
      case 3:
        return events.OnTrackWriteStart(track, below(3));
      case 4:
        return events.OnWriteProgress(track, below(9), 99);
      case 5:
        return events.OnReadBufferLevel(50);
      case 6:
        return events.OnTrackClosing(track);
      case 7:
        return events.OnSessionClosing();
      case 8:
        return events.OnDiscClosing();
      case 9:
        doing_ = Doing::Nothing;
        return events.OnOperationComplete();
      default:
        doing_ = Doing::Nothing;
        return events.OnWriteError(below(5), 7);
    }
  }

  std::minstd_rand random_;
  TempFolder folder_;
  FakeEngines engines_;
  FakeProcess process_;
  FakeOpener opener_;
  FakeHelp help_;
  fakes::FakePrintControls prints_;
  fakes::FakeRipping ripping_;
  FakeCommonControls commonControls_;
  fakes::FakeRegistry registry_;
  fakes::FakeFileVersions fileVersions_;
  fakes::FakeFolderListing folders_;
  fakes::FakeDrives drives_;
  Program program_{*this, Ports{*this, *this, folders_, drives_, *this, process_, engines_, opener_, help_, prints_,
                                ripping_.rippers, ripping_.encoders, ripping_.databases, commonControls_, registry_,
                                fileVersions_, Separators{}}};
  std::vector<std::string> files_;
  std::vector<Form*> shown_;
  std::vector<Form*> modals_;
  std::string lastBox_;
  int boxes_ = 0;
  int pumps_ = 0;
  enum class Doing { Nothing, Write, Erase, Close } doing_ = Doing::Nothing;
};

}  // namespace

TEST_CASE("A monkey at keyboard, mouse and drive brings the program to no error of its own") {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    CAPTURE(seed);
    Monkey monkey(seed);
    const int status = monkey.play(400);
    if (status != 0) FAIL("It ended with " << monkey.lastBox());
  }
}

}  // namespace trackloom
