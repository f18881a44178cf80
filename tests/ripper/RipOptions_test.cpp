#include <catch2/catch.hpp>
#include <filesystem>

#include "ripper/Ripping.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// A machine whose ripper has read a disc, with one row checked.
class Choosing : public Ripping {
 public:
  explicit Choosing(const std::string& artist = "Anna") {
    know(artist, "Evenings", {"One", "Two", "Three"});
    read();
    check({1});
  }
  /// What the user does in the dialog; it must leave it closed. No rip follows but after `rips`.
  void choose(const std::function<void(frmRipOptions&)>& use, bool rips = false) {
    desk.expectForm<frmRipOptions>(
        "frmRipOptions",
        [&](frmRipOptions& options) {
          use(options);
          if (rips) expectRip([this](frmRipStatus& status) { ripToEnd(status); });
        },
        "frmRipMain");
    form().cmdExtract.click();
    CHECK(desk.finished());
  }
  void browse(frmRipOptions& options, std::optional<HostPath> answer) {
    desk.expectFolder(std::move(answer));
    options.cmdFolder.click();
  }
};

std::string folderFile(const Ripping& machine) {
  return machine.folder.read("Folder.dat");
}

}  // namespace

TEST_CASE("The options that a user leaves as they are make numbered rates and names of the listing") {
  Choosing machine;
  machine.rip().RipBitRate = 160;
  machine.choose(
      [&](frmRipOptions& options) {
        machine.browse(options, machine.folder.host("rips"));
        options.cmdOK.click();
      },
      true);
  CHECK(machine.desk.folderPrompts == Lines{"Select Folder to Store Extracted Tracks to:"});
  CHECK(machine.rip().RipFolder == machine.rips());
  CHECK(machine.rip().RipNameMethod == 1);
  CHECK_FALSE(machine.rip().RipToMP3);
  CHECK(machine.rip().RipBitRate == 160);
  CHECK(folderFile(machine) == "\"" + machine.rips() + "\"\r\n");
}

TEST_CASE("Each way of naming has its number, and only the custom one takes the name") {
  const auto& [option, method] = GENERATE(table<int, int>({{0, 1}, {1, 2}, {2, 3}, {3, 4}}));
  Choosing machine;
  machine.rip().RipCustomName = "before";
  machine.choose(
      [&, chosen = option](frmRipOptions& options) {
        machine.browse(options, machine.folder.host("rips"));
        options.optNameCustom.click();
        options.txtName.type(" Side A ");
        options.naming[static_cast<std::size_t>(chosen)]->click();
        options.cmdOK.click();
      },
      true);
  CHECK(machine.rip().RipNameMethod == method);
  CHECK(machine.rip().RipCustomName == (method == 4 ? "Side A" : "before"));
}

TEST_CASE("The custom name can be typed once its option has been chosen, also when another one is chosen then") {
  Choosing machine;
  machine.choose([](frmRipOptions& options) {
    bool focused = false;
    bool selected = false;
    const Connection focus = options.txtName.focusRequested.connect([&] { focused = true; });
    const Connection all = options.txtName.selectAllRequested.connect([&] { selected = true; });
    CHECK_FALSE(options.txtName.Enabled);
    options.optNameCustom.click();
    CHECK(options.txtName.Enabled);
    CHECK(focused);
    options.txtName.focus();
    CHECK(selected);
    options.optNameList.click();
    CHECK(options.txtName.Enabled);
    options.cmdCancel.click();
  });
}

TEST_CASE("Each rate is offered while tracks become MP3, and is taken then alone") {
  const int rate = GENERATE(range(0, 6));
  Choosing machine;
  machine.choose(
      [&](frmRipOptions& options) {
        machine.browse(options, machine.folder.host("rips"));
        CHECK_FALSE(options.Combo1.Enabled);
        options.chkMP3.click();
        CHECK(options.Combo1.Enabled);
        options.Combo1.choose(rate);
        options.chkMP3.click();
        CHECK_FALSE(options.Combo1.Enabled);
        options.chkMP3.click();
        options.cmdOK.click();
      },
      true);
  CHECK(machine.rip().RipToMP3);
  CHECK(machine.rip().RipBitRate == std::vector{128, 160, 192, 224, 256, 320}[static_cast<std::size_t>(rate)]);
}

TEST_CASE("Nothing but the folder is remembered") {
  Choosing machine;
  machine.extract([](frmRipOptions& options) {
    options.chkMP3.click();
    options.Combo1.choose(5);
    options.optNameCustom.click();
    options.txtName.type("Side");
  });
  machine.choose([&](frmRipOptions& options) {
    CHECK(options.txtFolder.Text == machine.rips());
    CHECK(options.optNameList.selected());
    CHECK(options.txtName.Text == std::string("Track"));
    CHECK_FALSE(options.txtName.Enabled);
    CHECK_FALSE(options.chkMP3.Value);
    CHECK(options.Combo1.Text() == "128 kbps");
    CHECK_FALSE(options.Combo1.Enabled);
    options.cmdCancel.click();
  });
  CHECK(machine.rip().RipToMP3);
  CHECK(machine.rip().RipBitRate == 320);
}

TEST_CASE("Cancel and its key leave everything as it was, the file too") {
  Choosing machine;
  machine.extract();
  const std::string before = folderFile(machine);
  machine.choose([&](frmRipOptions& options) {
    CHECK(options.cmdCancel.Cancel);
    machine.browse(options, machine.folder.host("."));
    options.optNameCustom.click();
    options.chkMP3.click();
    options.cmdCancel.click();
  });
  CHECK(machine.rip().RipFolder.empty());
  CHECK(machine.rip().RipNameMethod == 1);
  CHECK_FALSE(machine.rip().RipToMP3);
  CHECK(folderFile(machine) == before);
}

TEST_CASE("A saved folder is read as it stands, without the blanks around it") {
  Choosing machine;
  const auto opensWith = [&](const std::string& bytes) {
    machine.folder.write("Folder.dat", bytes);
    std::string shown;
    machine.choose([&](frmRipOptions& options) {
      shown = options.txtFolder.Text;
      CHECK(machine.rip().RipFolder == shown);
      options.cmdCancel.click();
    });
    return shown;
  };
  CHECK(opensWith("\"" + machine.rips() + "\"\r\n") == machine.rips());
  CHECK(opensWith("\"  " + machine.rips() + " \"\r\n") == machine.rips());
  // What nobody has written so keeps its missing separator.
  CHECK(opensWith(machine.folder / "rips") == machine.folder / "rips");
  CHECK(opensWith("\"\"\r\n").empty());
  CHECK(opensWith("\"" + (machine.folder / "Folder.dat") + "\"\r\n").empty());
  CHECK(opensWith("\"" + machine.rips() + "\", \"more\"\r\n") == machine.rips());
}

TEST_CASE("A folder file without a value ends the program, as any error that nobody handles") {
  Choosing machine;
  machine.folder.write("Folder.dat", "");
  machine.desk.expectBox("Trackloom", BoxAnswer::Ok);
  CHECK(machine.endOf([&] { machine.form().cmdExtract.click(); }) == 1);
  CHECK(machine.desk.lastBox().text.starts_with("Run-time error '62':"));
}

TEST_CASE("Where a folder stands in the place of the folder file, nothing is read, and OK goes on without writing") {
  Choosing machine;
  std::filesystem::create_directory(machine.folder / "Folder.dat");
  machine.extract();
  CHECK(machine.rip().RipFolder == machine.rips());
  CHECK(std::filesystem::is_directory(machine.folder / "Folder.dat"));
}

TEST_CASE("A path of the browser is cut at its first NUL, and a quote in it comes back from the file") {
  Choosing machine;
  machine.choose([&](frmRipOptions& options) {
    machine.browse(options, HostPath((machine.folder / "rips") + std::string("\0x", 2)));
    CHECK(options.txtFolder.Text == machine.rips());
    options.cmdCancel.click();
  });
  machine.folder.write("a \"b\"/x", "");
  machine.choose(
      [&](frmRipOptions& options) {
        machine.browse(options, machine.folder.host("a \"b\""));
        options.cmdOK.click();
      },
      true);
  machine.choose([&](frmRipOptions& options) {
    CHECK(options.txtFolder.Text == machine.folder / "a \"b\"/");
    options.cmdCancel.click();
  });
}

TEST_CASE("Without a folder OK says so, leads to the choice and stays") {
  Choosing machine;
  machine.choose([&](frmRipOptions& options) {
    bool focused = false;
    const Connection focus = options.cmdFolder.focusRequested.connect([&] { focused = true; });
    options.optNameCustom.click();
    options.txtName.type("");
    // The folder comes first.
    machine.desk.expectBox("No Folder", BoxAnswer::Ok);
    options.cmdOK.click();
    CHECK(focused);
    CHECK(options.visible());
    options.cmdCancel.click();
  });
  CHECK_FALSE(machine.folder.has("Folder.dat"));
}

TEST_CASE("E148: A saved folder that is gone opens empty, and OK wants a folder until one is chosen") {
  Choosing machine;
  machine.extract();
  std::filesystem::remove_all(machine.folder / "rips");
  machine.choose([&](frmRipOptions& options) {
    CHECK(options.txtFolder.Text.get().empty());
    CHECK(machine.rip().RipFolder.empty());
    machine.desk.expectBox("No Folder", BoxAnswer::Ok);
    options.cmdOK.click();
    options.cmdCancel.click();
  });
}

TEST_CASE("A saved folder that is slow to answer holds up nothing, and comes in when it has answered") {
  Choosing machine;
  machine.extract();
  machine.folders.slow = true;
  machine.choose(
      [&](frmRipOptions& options) {
        CHECK(options.txtFolder.Text.get().empty());
        machine.desk.expectBox("No Folder", BoxAnswer::Ok);
        options.cmdOK.click();
        machine.folders.step();
        CHECK(options.txtFolder.Text == machine.rips());
        CHECK(machine.rip().RipFolder == machine.rips());
        options.cmdOK.click();
      },
      true);
}

TEST_CASE("A saved folder that answers behind a choice of the user's, or behind the dialog's end, changes nothing") {
  Choosing machine;
  machine.extract();
  machine.folders.slow = true;
  machine.choose([&](frmRipOptions& options) {
    machine.browse(options, machine.folder.host("."));
    const std::string chosen = options.txtFolder.Text;
    machine.folders.step();
    CHECK(options.txtFolder.Text == chosen);
    machine.browse(options, std::nullopt);
    CHECK(machine.rip().RipFolder.empty());
    options.cmdCancel.click();
  });
  const bool cancelled = GENERATE(true, false);
  machine.folder.write("Folder.dat", "\"" + machine.rips() + "\"\r\n");
  machine.choose([&](frmRipOptions& options) {
    if (cancelled)
      options.cmdCancel.click();
    else
      options.closeBox();
  });
  machine.folders.step();
  CHECK(machine.rip().RipFolder.empty());
}

TEST_CASE("E149: A cancelled browser leaves the folder in sight, but OK writes none and nothing is ripped") {
  Choosing machine;
  machine.extract();
  machine.choose([&](frmRipOptions& options) {
    machine.browse(options, std::nullopt);
    CHECK(options.txtFolder.Text == machine.rips());
    options.cmdOK.click();
  });
  CHECK(folderFile(machine) == "\"\"\r\n");
  CHECK(machine.rip().RipFolder.empty());
  machine.choose([](frmRipOptions& options) {
    CHECK(options.txtFolder.Text.get().empty());
    options.cmdCancel.click();
  });
  CHECK(machine.form().ListView2.CheckedCount() == 1);
}

TEST_CASE("E150: A root keeps its only separator") {
  Choosing machine;
  machine.choose([&](frmRipOptions& options) {
    machine.browse(options, HostPath("/"));
    CHECK(options.txtFolder.Text == std::string("/"));
    CHECK(machine.rip().RipFolder == "/");
    options.cmdCancel.click();
  });
}

TEST_CASE("E151: A custom name of blanks is none, blanks around one go, and only typing is limited to 25 characters") {
  Choosing machine;
  machine.choose(
      [&](frmRipOptions& options) {
        machine.browse(options, machine.folder.host("rips"));
        options.optNameCustom.click();
        bool focused = false;
        const Connection focus = options.txtName.focusRequested.connect([&] { focused = true; });
        options.txtName.type("   ");
        machine.desk.expectBox("No Name", BoxAnswer::Ok);
        bool focusedBefore = true;
        machine.desk.whileBoxIsOpen = [&](const MessageBox&) { focusedBefore = focused; };
        options.cmdOK.click();
        machine.desk.whileBoxIsOpen = nullptr;
        CHECK_FALSE(focusedBefore);
        CHECK(focused);
        CHECK(options.visible());
        CHECK(options.txtName.maxLength() == 25);
        options.txtName.type(std::string(30, 'x'));
        CHECK(options.txtName.Text == std::string(25, 'x'));
        options.txtName.Text = "  " + std::string(30, 'y') + " ";
        options.cmdOK.click();
      },
      true);
  CHECK(machine.rip().RipCustomName == std::string(30, 'y'));
}

TEST_CASE("E152: Closed by its box, the dialog rips into the saved folder in the manner of the last OK") {
  Choosing machine;
  machine.folder.write("Folder.dat", "\"" + machine.rips() + "\"\r\n");
  machine.choose([](frmRipOptions& options) { options.closeBox(); }, true);
  // Behind no OK at all the naming is the custom one, without a name.
  CHECK(machine.folder.has("rips/01.wav"));
  machine.extract([](frmRipOptions& options) { options.optNameListArtist.click(); });
  machine.choose(
      [](frmRipOptions& options) {
        options.chkMP3.click();
        options.optNameCustom.click();
        options.closeBox();
      },
      true);
  CHECK(machine.folder.has("rips/Anna - One.wav"));
  CHECK_FALSE(machine.folder.has("rips/Anna - One.mp3"));
  std::filesystem::remove(machine.folder / "Folder.dat");
  machine.choose([](frmRipOptions& options) { options.closeBox(); });
}

TEST_CASE("E153: Without an artist neither artist nor album can be added to the names, whatever the album") {
  Choosing machine("   ");
  CHECK(Trim(machine.rip().DiscAlbum.get()) == "Evenings");
  machine.choose([](frmRipOptions& options) {
    CHECK(options.optNameList.Enabled);
    CHECK_FALSE(options.optNameListArtist.Enabled);
    CHECK_FALSE(options.optNameListAlbum.Enabled);
    CHECK(options.optNameCustom.Enabled);
    options.cmdCancel.click();
  });
  Choosing known;
  known.choose([](frmRipOptions& options) {
    CHECK(options.optNameListArtist.Enabled);
    CHECK(options.optNameListAlbum.Enabled);
    options.cmdCancel.click();
  });
}

}  // namespace trackloom
