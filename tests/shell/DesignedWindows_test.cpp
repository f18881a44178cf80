#include <catch2/catch.hpp>

#include "fakes/Machine.h"

namespace trackloom {

using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// A running program with a layout of one track.
class Running : public Machine {
 public:
  explicit Running(std::int16_t kind = AudioLayout) {
    startQuietly();
    newLayout(kind);
    addTrack("a.mp3", 10);
    engines.stage.take();
  }
  ProgramForms& forms() { return program().forms(); }
};

/// Presses the button that leaves: the form goes, and nothing else comes of it.
template <class T>
void checkLeaving(Running& machine, FormSlot<T>& slot, Button T::*leave) {
  INFO(slot->name());
  (slot.get().*leave).click();
  CHECK_FALSE(slot.exists());
  CHECK(machine.engines.stage.take().empty());
  CHECK(machine.desk.boxes.empty());
  CHECK(machine.mod().LayoutOpen);
}

}  // namespace

TEST_CASE("Each window that is left by its button leaves everything as it was") {
  Running machine(Mp3Layout);
  ProgramForms& forms = machine.forms();
  checkLeaving(machine, forms.layout.frmOpenLayout, &frmOpenLayout::cmdCancel);
  checkLeaving(machine, forms.layout.frmFolder, &frmFolder::cmdCancel);
  checkLeaving(machine, forms.writing.frmISO, &frmISO::cmdCancel);
  checkLeaving(machine, forms.writing.frmDiskInfo, &frmDiskInfo::cmdOK);
  checkLeaving(machine, forms.writing.frmErase, &frmErase::cmdCancel);
  checkLeaving(machine, forms.search.frmSearch, &frmSearch::cmdCancel);
  checkLeaving(machine, forms.printing.frmPrintList, &frmPrintList::cmdCancel);
  checkLeaving(machine, forms.ripper.frmRipMain, &frmRipMain::cmdExit);
  checkLeaving(machine, forms.shell.frmAbout, &frmAbout::cmdOK);
}

TEST_CASE("frmISO takes its file from browsing alone and a label of 31 characters, and its Close withdraws the work") {
  Running machine(Mp3Layout);
  auto& slot = machine.forms().writing.frmISO;
  slot->txtImage.type("/tmp/x.iso");
  CHECK(slot->txtImage.Text == std::string());
  slot->txtLabel.type(std::string(32, 'x'));
  CHECK(slot->txtLabel.Text == std::string(31, 'x'));
  CHECK_FALSE(slot->cmdOK.Enabled);
  machine.mod().RecordConfirmed = true;
  slot->cmdCancel.click();
  CHECK_FALSE(machine.mod().RecordConfirmed);
}

}  // namespace trackloom
