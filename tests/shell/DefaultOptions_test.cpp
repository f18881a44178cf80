#include <catch2/catch.hpp>

#include "fakes/Machine.h"

namespace trackloom {

using fakes::Machine;
using Lines = std::vector<std::string>;

namespace {

/// The fields of `Options.dat` by their offsets.
enum Field : std::size_t { PromptSave = 0, SortMode = 262, SavedDrive = 264, ThemeColours = 266, WinWidth = 268 };

int fieldAt(const Machine& machine, std::size_t offset) {
  const std::string bytes = machine.folder.read("Options.dat");
  const int value = static_cast<unsigned char>(bytes.at(offset)) | static_cast<unsigned char>(bytes.at(offset + 1))
                                                                       << 8;
  return value > 32767 ? value - 65536 : value;
}

void patch(const Machine& machine, std::size_t offset, int value) {
  std::string bytes = machine.folder.read("Options.dat");
  bytes.at(offset) = static_cast<char>(value & 0xFF);
  bytes.at(offset + 1) = static_cast<char>((value >> 8) & 0xFF);
  machine.folder.write("Options.dat", bytes);
}

/// A machine whose options lie in its folder already.
class Settled : public Machine {
 public:
  Settled() { startQuietly(); }

  void options(const std::function<void(frmDefaultOptions&)>& script) {
    desk.expectForm<frmDefaultOptions>("frmDefaultOptions", script);
    click("mnuToolsOptions");
    CHECK(desk.finished());
  }
  void confirm(const std::function<void(frmDefaultOptions&)>& choose) {
    options([&](frmDefaultOptions& form) {
      choose(form);
      form.cmdOK.click();
    });
  }
  void cancel() {
    options([](frmDefaultOptions& form) { form.cmdCancel.click(); });
  }
  Lines names() {
    Lines names;
    for (int row = 1; row <= window().ListView1.Count(); ++row) names.push_back(window().ListView1.Item(row).Text);
    return names;
  }
  void addTracks() {
    for (const char* name : {"c.mp3", "a.mp3", "b.mp3"}) addTrack(name, 10);
  }
};

}  // namespace

TEST_CASE("E033: Without Options.dat the next start has the defaults in a maximised window") {
  Settled machine;
  machine.confirm([](frmDefaultOptions& form) {
    form.chkPrompt.click();
    form.chkBack.click();
  });
  machine.window().placement = Placement{WindowState::Normal, 15, 30, 9000, 6000};
  REQUIRE(machine.close() == 0);
  CHECK(fieldAt(machine, PromptSave) == 0);
  std::filesystem::remove(machine.folder / "Options.dat");

  machine.startQuietly();
  CHECK(machine.mod().Options.PromptSave == 1);
  CHECK(machine.mod().Options.ThemeColours == 1);
  CHECK(machine.mod().Options.SortMode == 0);
  CHECK(machine.mod().Options.LastFolder == std::string(260, ' '));
  CHECK(machine.window().placement.get().state == WindowState::Maximized);
  CHECK(machine.folder.read("Options.dat") ==
        std::string("\1\0", 2) + std::string(260, ' ') + std::string("\0\0\0\0\1\0", 6) + std::string(8, '\0'));
}

TEST_CASE("E034: Opening the dialog replaces the whole record by the file's, also on Cancel") {
  Settled machine;
  machine.mod().Options.setLastFolder("/home/me/music/");
  machine.mod().Options.SavedDrive = 3;
  machine.mod().Options.WinWidth = 12345;
  machine.cancel();
  CHECK(machine.mod().Options.LastFolder == std::string(260, ' '));
  CHECK(machine.mod().Options.SavedDrive == 0);
  CHECK(machine.mod().Options.WinWidth == 0);
}

TEST_CASE("E035: OK writes the file's placement, not the window's") {
  Settled machine;
  machine.window().placement = Placement{WindowState::Normal, 15, 30, 9000, 6000};
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  machine.window().placement = Placement{WindowState::Normal, 1500, 3000, 12000, 8000};
  machine.confirm([](frmDefaultOptions& form) { form.chkPrompt.click(); });
  CHECK(fieldAt(machine, PromptSave) == 0);
  CHECK(fieldAt(machine, WinWidth) == 9000);
  CHECK(fieldAt(machine, WinWidth + 2) == 6000);
  CHECK(fieldAt(machine, WinWidth + 4) == 15);
  CHECK(fieldAt(machine, WinWidth + 6) == 30);
  CHECK(machine.folder.read("Options.dat").size() == 276);
}

TEST_CASE("E036: A SortMode below 0 sorts like 0, one above 2 like 2") {
  const int mode = GENERATE(-32768, -3, -1, 3, 9, 32767);
  Settled machine;
  patch(machine, SortMode, mode);
  machine.startQuietly();
  machine.window().ListView1.SetSortKey(2);
  machine.newLayout(Mp3Layout);
  machine.addTracks();
  const bool sorted = mode < 0;
  CHECK(machine.names() == (sorted ? Lines{"a.mp3", "b.mp3", "c.mp3"} : Lines{"c.mp3", "a.mp3", "b.mp3"}));
  CHECK(machine.window().ListView1.Sorted() == sorted);
  CHECK(machine.window().ListView1.SortKey() == (sorted ? 0 : 2));
  CHECK(machine.mod().Options.SortMode == mode);
}

TEST_CASE("A value outside its range shows as no choice, and OK then stores -1") {
  Settled machine;
  patch(machine, SortMode, 9);
  patch(machine, PromptSave, -1);
  patch(machine, ThemeColours, 5);
  machine.confirm([](frmDefaultOptions& form) {
    CHECK(form.cboSort.ListIndex() == -1);
    CHECK_FALSE(form.chkPrompt.Value);
    CHECK_FALSE(form.chkBack.Value);
  });
  CHECK(fieldAt(machine, SortMode) == -1);
  CHECK(fieldAt(machine, PromptSave) == 0);
  CHECK(fieldAt(machine, ThemeColours) == 0);
}

TEST_CASE("E037: Another sorting changes nothing on the screen while an audio layout is open") {
  Settled machine;
  machine.newLayout(AudioLayout);
  machine.addTracks();
  for (const int mode : {1, 2, 0}) {
    machine.confirm([mode](frmDefaultOptions& form) { form.cboSort.choose(mode); });
    CHECK(machine.names() == Lines{"c.mp3", "a.mp3", "b.mp3"});
    CHECK_FALSE(machine.window().ListView1.Sorted());
    CHECK(fieldAt(machine, SortMode) == mode);
  }
}

TEST_CASE("E038: The look of the bars changes at OK and comes back only with Trackloom.dsl") {
  Settled machine;
  machine.confirm([&](frmDefaultOptions& form) {
    CHECK(form.chkBack.Value);
    form.chkBack.click();
    CHECK(machine.window().DockStudio1.UseThemeColours == 1);
  });
  CHECK(machine.window().DockStudio1.UseThemeColours == 0);
  REQUIRE(machine.close() == 0);
  machine.startQuietly();
  CHECK(machine.window().DockStudio1.UseThemeColours == 0);

  REQUIRE(machine.close() == 0);
  std::filesystem::remove(machine.folder / "Trackloom.dsl");
  machine.startQuietly();
  CHECK(machine.window().DockStudio1.UseThemeColours == 1);
  CHECK(fieldAt(machine, ThemeColours) == 0);
}

TEST_CASE("The dialog has its words and shows what the file holds") {
  Settled machine;
  patch(machine, SortMode, 2);
  machine.options([](frmDefaultOptions& form) {
    CHECK(form.caption == std::string("Default Options"));
    CHECK(form.Image1.Picture == std::string("DefaultOptions"));
    REQUIRE(form.cboSort.items().size() == 3);
    CHECK(form.cboSort.items()[0].text == "Sort by Track Name (Default)");
    CHECK(form.cboSort.items()[1].text == "Sort by Folder Name");
    CHECK(form.cboSort.Text() == "No Sorting (Items are listed in order added)");
    CHECK(form.chkPrompt.Value);
    form.cmdCancel.click();
  });
  CHECK_FALSE(machine.session().frmImages.exists());
}

TEST_CASE("OK sorts an open MP3 layout at once") {
  Settled machine;
  patch(machine, SortMode, 2);
  machine.startQuietly();
  machine.newLayout(Mp3Layout);
  machine.addTracks();
  machine.confirm([](frmDefaultOptions& form) { form.cboSort.choose(0); });
  CHECK(machine.names() == Lines{"a.mp3", "b.mp3", "c.mp3"});
  machine.window().ListView1.SetSubItem(1, 3, "\\Rock");
  machine.confirm([](frmDefaultOptions& form) { form.cboSort.choose(1); });
  CHECK(machine.names() == Lines{"b.mp3", "c.mp3", "a.mp3"});
}

TEST_CASE("Without an open layout OK sorts nothing, whatever kind the last one had") {
  Settled machine;
  patch(machine, SortMode, 2);
  machine.startQuietly();
  machine.newLayout(Mp3Layout);
  machine.click("mnuFileClose");
  machine.confirm([](frmDefaultOptions& form) { form.cboSort.choose(0); });
  CHECK_FALSE(machine.window().ListView1.Sorted());
}

TEST_CASE("Each box that is ticked stores 1, and each that is not 0") {
  const bool prompt = GENERATE(true, false);
  const bool theme = GENERATE(true, false);
  Settled machine;
  patch(machine, PromptSave, prompt ? 0 : 1);
  patch(machine, ThemeColours, theme ? 0 : 1);
  machine.confirm([](frmDefaultOptions& form) {
    form.chkPrompt.click();
    form.chkBack.click();
  });
  CHECK(fieldAt(machine, PromptSave) == (prompt ? 1 : 0));
  CHECK(fieldAt(machine, ThemeColours) == (theme ? 1 : 0));
  CHECK(machine.mod().Options.PromptSave == (prompt ? 1 : 0));
  CHECK(machine.window().DockStudio1.UseThemeColours == (theme ? 1 : 0));
}

TEST_CASE("Cancel changes neither the file nor the look") {
  Settled machine;
  const std::string before = machine.folder.read("Options.dat");
  machine.options([](frmDefaultOptions& form) {
    form.chkBack.click();
    form.chkPrompt.click();
    form.cboSort.choose(2);
    form.cmdCancel.click();
  });
  CHECK(machine.folder.read("Options.dat") == before);
  CHECK(machine.window().DockStudio1.UseThemeColours == 1);
  CHECK(machine.mod().Options.SortMode == 0);
}

TEST_CASE("A file that can be neither read nor written is passed over without a word") {
  Settled machine;
  machine.mod().Options.SavedDrive = 4;
  std::filesystem::remove(machine.folder / "Options.dat");
  std::filesystem::create_directory(machine.folder / "Options.dat");
  machine.confirm([&](frmDefaultOptions& form) {
    CHECK(machine.mod().Options.SavedDrive == 4);
    form.cboSort.choose(1);
  });
  CHECK(machine.mod().Options.SortMode == 1);
  CHECK(machine.desk.boxes.empty());
  CHECK(machine.window().visible());
}

}  // namespace trackloom
