#pragma once

#include <catch2/catch.hpp>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/Machine.h"
#include "ripper/Hearing.h"
#include "ripper/RipperForms.h"

namespace trackloom {

/// A machine whose user has opened the ripper, before a disc of three audio tracks that the database does not know. The
/// folder `rips` is there for the files. Everything that happens is written down as a dialogue.
class Ripping : public fakes::Machine {
 public:
  using Lines = Hearing::Lines;

  /// `prepare` runs before the ripper is opened.
  explicit Ripping(const std::function<void(Ripping&)>& prepare = {}) {
    folder.write("rips/.keep", "");
    ripping.stage.disc = {{0, 750}, {750, 1500}, {2250, 75}};
    if (prepare) prepare(*this);
    startQuietly();
    ripping.stage.onLine = [this](const std::string& line) { hearing.hear(line); };
    desk.onLine = [this](const std::string& line) { hearing.hear(line + wordsOf(line)); };
    click("Ripper");
    hearing.heard();
    ripping.stage.take();
  }

  Hearing hearing{folder.path()};

  RipperForms& forms() { return program().forms().ripper; }
  frmRipMain& form() { return forms().frmRipMain.get(); }
  CDRipperMod1& rip() { return forms().mod; }
  fakes::FakeRipper& engine() { return dynamic_cast<fakes::FakeRipper&>(*form().CDRipperX1); }
  fakes::RipperStage& stage() { return ripping.stage; }
  std::string rips() const { return folder / "rips/"; }
  std::string status() { return form().StatusBar1.PanelText(1); }

  void know(const std::string& artist, const std::string& title, const std::vector<std::string>& tracks,
            const std::string& genre = "", const std::string& year = "") {
    DiscRecord record{artist, title, genre, year, {}};
    for (const std::string& track : tracks) record.Tracks.push_back({track});
    stage().matches = {record};
  }
  void read() { form().cmdRead.click(); }
  Lines rows() {
    Lines rows;
    const ListView& list = form().ListView2;
    for (int row = 1; row <= list.Count(); ++row)
      rows.push_back(list.Item(row).Text + "|" + list.SubItem(row, 1) + "|" + list.SubItem(row, 2) + "|" +
                     list.SubItem(row, 3));
    return rows;
  }
  Lines names() {
    Lines names;
    for (int row = 1; row <= form().ListView2.Count(); ++row) names.push_back(form().ListView2.Item(row).Text);
    return names;
  }
  void check(const std::vector<int>& rows) {
    for (const int row : rows) form().ListView2.check(row, true);
  }

  /// The user takes the folder `rips`, does `choose`, and agrees.
  void expectOptions(const std::function<void(frmRipOptions&)>& choose = {}) {
    desk.expectForm<frmRipOptions>(
        "frmRipOptions",
        [choose](frmRipOptions& options) {
          options.cmdFolder.click();
          if (choose) choose(options);
          options.cmdOK.click();
        },
        "frmRipMain");
    desk.expectFolder(folder.host("rips"));
  }
  /// `use` is what happens before the dialog of the rip, from its first activation on.
  void expectRip(const std::function<void(frmRipStatus&)>& use) {
    desk.expectForm<frmRipStatus>(
        "frmRipStatus",
        [this, use](frmRipStatus& status) {
          hearing.watch(status);
          use(status);
        },
        "frmRipMain");
  }
  /// From the first activation up to the last word.
  void ripToEnd(frmRipStatus& status) {
    status.activated();
    desk.expectBox("Operation Complete", BoxAnswer::Ok);
    engine().finish();
  }
  /// Rips what is checked.
  void extract(const std::function<void(frmRipOptions&)>& choose = {}) {
    expectOptions(choose);
    expectRip([this](frmRipStatus& status) { ripToEnd(status); });
    form().cmdExtract.click();
    CHECK(desk.finished());
  }
  void extractAll(const std::function<void(frmRipOptions&)>& choose = {}) {
    form().cmdSelectAll.click();
    extract(choose);
  }

 private:
  std::string wordsOf(const std::string& line) const {
    return line.starts_with("box ") ? " \"" + desk.lastBox().text + "\"" : "";
  }
};

}  // namespace trackloom
