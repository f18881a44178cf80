#include "ripper/Ripping.h"

#include <catch2/catch.hpp>

namespace trackloom {

Ripping::Ripping(const std::function<void(Ripping&)>& prepare) : hearing(folder.path()) {
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

Ripping::~Ripping() = default;

RipperForms& Ripping::forms() {
  return program().forms().ripper;
}

frmRipMain& Ripping::form() {
  return forms().frmRipMain.get();
}

CDRipperMod1& Ripping::rip() {
  return forms().mod;
}

fakes::FakeRipper& Ripping::engine() {
  return dynamic_cast<fakes::FakeRipper&>(*form().CDRipperX1);
}

fakes::RipperStage& Ripping::stage() {
  return ripping.stage;
}

std::string Ripping::rips() const {
  return folder / "rips/";
}

std::string Ripping::status() {
  return form().StatusBar1.PanelText(1);
}

void Ripping::know(const std::string& artist, const std::string& title, const std::vector<std::string>& tracks,
                   const std::string& genre, const std::string& year) {
  DiscRecord record{artist, title, genre, year, {}};
  for (const std::string& track : tracks) record.Tracks.push_back({track});
  stage().matches = {record};
}

void Ripping::read() {
  form().cmdRead.click();
}

Ripping::Lines Ripping::rows() {
  Lines rows;
  const ListView& list = form().ListView2;
  for (int row = 1; row <= list.Count(); ++row)
    rows.push_back(list.Item(row).Text + "|" + list.SubItem(row, 1) + "|" + list.SubItem(row, 2) + "|" +
                   list.SubItem(row, 3));
  return rows;
}

Ripping::Lines Ripping::names() {
  Lines names;
  for (int row = 1; row <= form().ListView2.Count(); ++row) names.push_back(form().ListView2.Item(row).Text);
  return names;
}

void Ripping::check(const std::vector<int>& rows) {
  for (const int row : rows) form().ListView2.check(row, true);
}

void Ripping::expectOptions(const std::function<void(frmRipOptions&)>& choose) {
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

void Ripping::expectRip(const std::function<void(frmRipStatus&)>& use) {
  desk.expectForm<frmRipStatus>(
      "frmRipStatus",
      [this, use](frmRipStatus& status) {
        hearing.watch(status);
        use(status);
      },
      "frmRipMain");
}

void Ripping::ripToEnd(frmRipStatus& status) {
  status.activated();
  desk.expectBox("Operation Complete", BoxAnswer::Ok);
  engine().finish();
}

void Ripping::extract(const std::function<void(frmRipOptions&)>& choose) {
  expectOptions(choose);
  expectRip([this](frmRipStatus& status) { ripToEnd(status); });
  form().cmdExtract.click();
  CHECK(desk.finished());
}

void Ripping::extractAll(const std::function<void(frmRipOptions&)>& choose) {
  form().cmdSelectAll.click();
  extract(choose);
}

std::string Ripping::wordsOf(const std::string& line) const {
  return line.starts_with("box ") ? " \"" + desk.lastBox().text + "\"" : "";
}

}  // namespace trackloom
