#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"
#include "layout/frmNewOption.h"
#include "layout/frmSave.h"

namespace trackloom {

using fakes::LayoutMachine;
using Lines = std::vector<std::string>;

namespace {

constexpr const char* Stale = "stale";

/// A machine with an MP3 layout of two tracks whose meter shows nonsense from the moment its user wants it to.
class Metered : public LayoutMachine {
 public:
  Metered() : LayoutMachine(Mp3Layout) {
    addTrack("a.mp3", 1000);
    addTrack("b.mp3", 500);
    window().ListView1.SelectRow(1);
    mod().Options.PromptSave = 0;
  }
  void spoilMeter() { window().Progress1.Text = Stale; }
  /// Announces a dialog, at whose end the meter is spoiled.
  void expect(const std::string& form) {
    desk.expectForm<Form>(form, [this](Form& shown) {
      shown.closeBox();
      spoilMeter();
    });
  }
  std::string meter() { return window().Progress1.Text; }
};

std::vector<double> widthsOf(ListingWindow& window) {
  std::vector<double> widths;
  for (const ListColumn& column : window.ListView1.columns()) widths.push_back(column.width);
  return widths;
}

void checkWidths(ListingWindow& window, const std::vector<double>& wanted) {
  const auto widths = widthsOf(window);
  REQUIRE(widths.size() == wanted.size());
  for (std::size_t column = 0; column < wanted.size(); ++column) CHECK(widths[column] == Approx(wanted[column]));
}

}  // namespace

TEST_CASE("The meter is drawn anew behind each dialog that can have changed the listing") {
  const std::map<std::string, std::string> dialogs{{"AddFiles", "frmFiles"},
                                                   {"mnuActionsSearch", "frmSearch"},
                                                   {"ShowAll", "frmFolder"},
                                                   {"ShowNoFolder", "frmFolder"}};
  for (const auto& [tool, form] : dialogs) {
    INFO(tool);
    Metered machine;
    machine.expect(form);
    machine.click(tool);
    CHECK(machine.desk.finished());
    CHECK(machine.meter() == "1,800 Blocks of 359,849 Blocks  (1% of CD Used)");
  }
}

TEST_CASE("The meter is drawn anew behind Delete, also where the user keeps the track") {
  Metered machine;
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) { machine.spoilMeter(); };
  machine.desk.expectBox("Remove Track", BoxAnswer::Cancel);
  machine.click("Delete");
  CHECK(machine.meter() == "1,800 Blocks of 359,849 Blocks  (1% of CD Used)");
}

TEST_CASE("A dialog that changes no listing leaves the meter alone") {
  for (const auto& [tool, form] : std::map<std::string, std::string>{{"mnuToolsErase", "frmErase"},
                                                                     {"mnuActionsCreate", "frmISO"},
                                                                     {"mnuToolsInformation", "frmDiskInfo"},
                                                                     {"mnuHelpAbout", "frmAbout"}}) {
    INFO(tool);
    Metered machine;
    machine.expect(form);
    machine.click(tool);
    CHECK(machine.meter() == Stale);
  }
}

TEST_CASE("New gives the columns their widths and draws the meter behind its dialog, each time") {
  Metered machine;
  machine.window().DockStudio1.reportArea({0, 900, 15400, 6000}, 15500);
  for (const std::int16_t kind : {AudioLayout, Mp3Layout, AudioLayout}) {
    machine.desk.expectForm<frmNewOption>("frmNewOption", [&](frmNewOption& form) {
      CHECK_FALSE(form.chkNoShow.Visible);
      (kind == AudioLayout ? form.optStandard : form.optMP3).click();
      form.cmdOK.click();
      machine.window().ListView1.SetColumnWidth(1, 1);
      machine.spoilMeter();
    });
    machine.click("mnuFileNew");
    checkWidths(machine.window(), kind == AudioLayout ? std::vector<double>{7000, 4400, 15400 / 6.5}
                                                      : std::vector<double>{15400 / 2.7, 15400 / 3.3, 2200, 2200});
    CHECK(machine.meter() == "0 Blocks of 359,849 Blocks  (0% of CD Used)");
  }
}

TEST_CASE("The list takes the area that the bars leave, and the meter the width of the bars") {
  Metered machine;
  machine.window().DockStudio1.reportArea({30, 900, 15400, 6000}, 15500);
  CHECK(machine.window().ListView1.Width.get() == Approx(15400));
  CHECK(machine.window().ListView1.Height.get() == Approx(6000));
  CHECK(machine.window().Progress1.Width.get() == Approx(15500));
  machine.window().DockStudio1.reportArea({30, 900, 15400, 3000}, 9000);
  CHECK(machine.window().ListView1.Height.get() == Approx(3000));
  CHECK(machine.window().Progress1.Width.get() == Approx(9000));
}

TEST_CASE("The commands for tracks go off with the last track, and stay on with the last but one") {
  Metered machine;
  for (const bool left : {true, false}) {
    machine.desk.expectBox("Remove Track", BoxAnswer::Ok);
    machine.click("mnuActionsDelete");
    for (const char* tool : {"Delete", "Record", "Print", "mnuActionsPlay", "CDFolder"})
      CHECK(machine.enabled(tool) == left);
    CHECK(machine.enabled("AddFiles"));
  }
}

TEST_CASE("Only the Tools menu looks at the drive when it opens") {
  Metered machine;
  machine.engines.stage.take();
  for (const char* menu : {"mnuFile", "mnuActions", "mnuHelp", "mnuActionsFolder"})
    machine.window().DockStudio1.openMenu(menu);
  CHECK(machine.engines.stage.take().empty());
  machine.window().DockStudio1.openMenu("mnuTools");
  CHECK(machine.engines.stage.take() == Lines{"CDR1.MediaLoaded"});
}

TEST_CASE("A double click plays its track, and without a selected one nothing is played") {
  Metered machine;
  machine.window().ListView1.doubleClick(2);
  REQUIRE(machine.opener.orders.size() == 1);
  CHECK(machine.opener.orders[0].file == machine.folder / "music/b.mp3");

  machine.window().ListView1.SelectRow(0);
  machine.click("mnuActionsPlay");
  CHECK(machine.opener.orders.size() == 1);
  CHECK(machine.desk.boxes.empty());
}

TEST_CASE("The only track of a layout is played") {
  LayoutMachine machine(AudioLayout);
  machine.addTrack("a.mp3", 10);
  machine.window().ListView1.SelectRow(1);
  machine.click("mnuActionsPlay");
  CHECK(machine.opener.orders.size() == 1);
}

TEST_CASE("Save As offers the name that the layout has, and Save asks for one only where there is none") {
  Metered machine;
  for (const std::string name : {"Mix", "Summer.2"}) {
    machine.desk.expectForm<frmSave>("frmSave", [&](frmSave& form) {
      CHECK(form.txtName.Text == machine.mod().LayoutFileName.substr(0, machine.mod().LayoutFileName.find(".mixl")));
      form.txtName.type(name);
      form.cmdOK.click();
    });
    machine.click("mnuFileSaveAs");
    CHECK(machine.mod().LayoutFileName == name + ".mixl");
    machine.mod().LayoutSaved = false;
    machine.click("mnuFileSave");
    CHECK(machine.mod().LayoutSaved);
  }
  CHECK(machine.folder.has("Layouts/Mix.mixl"));
  CHECK(machine.folder.has("Layouts/Summer.2.mixl"));
}

TEST_CASE("A printed listing is read and then shown, whatever the last sort choice was") {
  Metered machine;
  machine.mod().SortChoiceCancelled = true;
  machine.desk.transcript.clear();
  machine.expect("frmReadStatus");
  machine.expect("frmPrintList");
  machine.click("Print");
  CHECK(machine.desk.transcript ==
        Lines{"modal frmReadStatus", "unload frmReadStatus", "modal frmPrintList", "unload frmPrintList"});
}

}  // namespace trackloom
