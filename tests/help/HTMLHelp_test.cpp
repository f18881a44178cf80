#include "help/HTMLHelp.h"

#include <catch2/catch.hpp>

#include "fakes/Machine.h"

namespace trackloom {

namespace {

constexpr const char* RegisterTitle = "HTML Help Class: HHRegister Error";
constexpr const char* HelpFilesKey = "Software\\Microsoft\\Windows\\HTML Help";
constexpr const char* EngineKey = "CLSID\\{4662DAB0-D393-11D0-9A56-00C04FB68B66}\\InprocServer32";
constexpr const char* BrowserKey = "CLSID\\{0A89A860-D7B1-11CE-8350-444553540000}\\InProcServer32";
using Root = Registry::Root;

/// The class on a machine whose boxes are answered and noted, with a help file in its folder.
struct World : MessageBoxes {
  World() : session(machine.desk, portsOf(machine, *this)) {
    session.mod.AppFolder = machine.folder.path() + "/";
    machine.folder.write("a.chm", "");
    help.CHMFile = file;
  }

  static Ports portsOf(fakes::Machine& machine, MessageBoxes& boxes) {
    machine.startQuietly();
    const Ports& ports = machine.session().ports;
    return {boxes,
            ports.files,
            ports.folders,
            ports.drives,
            ports.pump,
            ports.process,
            ports.writers,
            ports.opener,
            ports.help,
            ports.prints,
            ports.rippers,
            ports.encoders,
            ports.databases,
            ports.commonControls,
            ports.registry,
            ports.fileVersions,
            {}};
  }

  BoxAnswer show(const MessageBox& box) override {
    CHECK(box.buttons == BoxButtons::Ok);
    CHECK(box.icon == BoxIcon::Critical);
    told.push_back(box.title + ": " + box.text);
    return BoxAnswer::Ok;
  }

  std::vector<fakes::FakeHelp::Call>& calls() { return machine.help.calls; }
  std::map<fakes::FakeRegistry::Place, std::string>& texts() { return machine.registry.texts; }

  fakes::Machine machine;
  Session session;
  HTMLHelp help{session};
  const std::string file = machine.folder / "a.chm";
  std::intptr_t window = 7;
  std::vector<std::string> told;
};

const char* textOf(std::intptr_t data) {
  return reinterpret_cast<const char*>(data);
}

}  // namespace

TEST_CASE("Each display of help gives the engine its command") {
  struct Row {
    void (HTMLHelp::*display)(std::intptr_t&);
    std::vector<std::uint32_t> commands;
    bool inWindow;
  };
  for (const Row& row : std::initializer_list<Row>{{&HTMLHelp::HHDisplayTopicURL, {0}, true},
                                                   {&HTMLHelp::HHDisplayTopicID, {15}, true},
                                                   {&HTMLHelp::HHDisplaySearch, {3}, true},
                                                   {&HTMLHelp::HHDisplayKeyword, {0, 13}, false},
                                                   {&HTMLHelp::HHDisplayIndex, {2}, true},
                                                   {&HTMLHelp::HHDisplayContents, {1}, true},
                                                   {&HTMLHelp::HHDisplayALink, {19}, false},
                                                   {&HTMLHelp::HHDisplayPopup, {14}, true},
                                                   {&HTMLHelp::HHClose, {18}, true}}) {
    World world;
    world.help.HHWindow = "main";
    (world.help.*row.display)(world.window);
    std::vector<std::uint32_t> commands;
    for (const auto& call : world.calls()) {
      commands.push_back(call.command);
      CHECK(call.target == world.file + (row.inWindow ? ">main" : ""));
      CHECK(call.owner == 0);
    }
    CHECK(commands == row.commands);
    CHECK(world.window == 7);
  }
}

TEST_CASE("Each display of help hands over its data") {
  World world;
  world.help.HHTopicURL = "page.htm";
  world.help.HHTopicID = 79;
  world.help.HHKeyword = "blank";
  world.help.HHALink = "disc";
  world.help.HHWindow = "main";
  std::vector<std::string> heard;
  world.machine.help.onCall = [&heard](const fakes::FakeHelp::Call& call) {
    if (call.command == HelpContext || call.data == 0) return heard.push_back(std::to_string(call.data));
    if (call.command == HelpDisplaySearch) {
      const auto* query = reinterpret_cast<const HelpQuery*>(call.data);
      return heard.push_back(query->text + "|" + query->window);
    }
    heard.emplace_back(textOf(call.data));
  };
  world.help.HHDisplayTopicURL(world.window);
  world.help.HHDisplayTopicID(world.window);
  world.help.HHDisplaySearch(world.window);
  world.help.HHDisplayKeyword(world.window);
  world.help.HHDisplayIndex(world.window);
  world.help.HHDisplayContents(world.window);
  world.help.HHDisplayALink(world.window);
  world.help.HHClose(world.window);
  CHECK(heard == std::vector<std::string>{"page.htm", "79", "|main", "0", "blank", "0", "0", "disc", "0"});
}

TEST_CASE("A popup takes its text, its letters, and the colours that are asked for") {
  World world;
  world.help.HHPopupFile = "notes.txt";
  world.help.HHPopupID = 100000;
  world.help.HHPopupType = 2;
  world.help.HHPopupText = "A note";
  world.help.HHPopupTextColor = 1;
  world.help.HHPopupBackColor = 2;
  world.help.HHPopupCustomTextColor = 3;
  world.help.HHPopupCustomBackColor = 4;
  world.help.HHPopupTextFont = "Arial";
  world.help.HHPopupTextSize = 12;
  world.help.HHPopupTextItalic = true;
  std::vector<HelpPopup> heard;
  world.machine.help.onCall = [&heard](const fakes::FakeHelp::Call& call) {
    heard.push_back(*reinterpret_cast<const HelpPopup*>(call.data));
  };
  world.help.HHDisplayPopup(world.window);
  world.help.HHPopupCustomColors = true;
  world.help.HHPopupTextItalic = false;
  world.help.HHPopupTextBold = true;
  world.help.HHPopupTextUnderline = true;
  world.help.HHDisplayPopup(world.window);
  REQUIRE(heard.size() == 2);
  CHECK(heard[0].file == "notes.txt");
  CHECK(heard[0].id == 100000);
  CHECK(heard[0].type == 2);
  CHECK(heard[0].text == "A note");
  CHECK(heard[0].font == "Arial");
  CHECK(heard[0].size == 12);
  CHECK((heard[0].textColour == 1 && heard[0].backColour == 2));
  CHECK((!heard[0].bold && heard[0].italic && !heard[0].underline));
  CHECK((heard[1].textColour == 3 && heard[1].backColour == 4));
  CHECK((heard[1].bold && !heard[1].italic && heard[1].underline));
}

TEST_CASE("E169: A window of blanks counts as none, and the target is the file alone") {
  World world;
  world.help.HHWindow = "   ";
  world.help.HHDisplayContents(world.window);
  world.help.HHWindow = "";
  world.help.HHDisplayContents(world.window);
  world.help.HHWindow = " main ";
  world.help.HHDisplayContents(world.window);
  REQUIRE(world.calls().size() == 3);
  CHECK(world.calls()[0].target == world.file);
  CHECK(world.calls()[1].target == world.file);
  CHECK(world.calls()[2].target == world.file + "> main ");
}

TEST_CASE("The window that asks owns the help only where help is to stay in front") {
  World world;
  world.help.HHDisplayContents(world.window);
  world.help.HHShowOnTop = true;
  world.help.HHDisplayContents(world.window);
  world.help.HHDisplayKeyword(world.window);
  REQUIRE(world.calls().size() == 4);
  CHECK(world.calls()[0].owner == 0);
  for (std::size_t call = 1; call < 4; ++call) CHECK(world.calls()[call].owner == 7);
}

TEST_CASE("The question what something is goes to the window and needs no file") {
  World world;
  world.help.CHMFile = "";
  world.help.HHInvokeWhatsThisHelp(world.window);
  CHECK(world.machine.help.asked == std::vector<std::intptr_t>{7});
  CHECK(world.calls().empty());
}

TEST_CASE("Without its file no display asks the engine, silently") {
  World world;
  world.help.CHMFile = world.machine.folder / "gone.chm";
  for (const auto display : {&HTMLHelp::HHDisplayTopicID, &HTMLHelp::HHDisplayKeyword, &HTMLHelp::HHDisplayALink,
                             &HTMLHelp::HHDisplaySearch, &HTMLHelp::HHDisplayPopup, &HTMLHelp::HHClose})
    (world.help.*display)(world.window);
  CHECK(world.calls().empty());
  CHECK(world.told.empty());
}

TEST_CASE("A missing object ends a display, and any other failure goes on with the next statement") {
  World world;
  world.help.CHMFile = "bare.chm";
  for (const RuntimeError::Number number : {RuntimeError::ObjectNotSet, RuntimeError::PermissionDenied}) {
    world.machine.registry.refusal = RuntimeError(number);
    world.help.HHDisplayContents(world.window);
  }
  REQUIRE(world.calls().size() == 1);
  CHECK(world.calls()[0].target == "bare.chm");

  world.help.CHMFile = world.file;
  const auto callsWhenFailing = [&world](RuntimeError::Number number) {
    world.calls().clear();
    world.machine.help.onCall = [number](const fakes::FakeHelp::Call&) { throw RuntimeError(number); };
    world.help.HHDisplayKeyword(world.window);
    return world.calls().size();
  };
  CHECK(callsWhenFailing(RuntimeError::ObjectNotSet) == 1);
  CHECK(callsWhenFailing(RuntimeError::DeviceIoError) == 2);
  CHECK(world.told.empty());
}

TEST_CASE("Only a bare name is looked up, and the path that comes of it is the caller's") {
  World world;
  world.texts()[{Root::LocalMachine, HelpFilesKey, "a.chm"}] = world.machine.folder.path();
  std::string bare = "a.chm";
  CHECK(world.help.EnsureFileExists(bare));
  CHECK(bare == world.file);

  std::string whole = "./a.chm";
  CHECK_FALSE(world.help.EnsureFileExists(whole));
  CHECK(whole == "./a.chm");

  world.help.CHMFile = "a.chm";
  world.help.HHDisplayContents(world.window);
  CHECK(world.help.CHMFile == world.file);
  CHECK(world.calls().back().target == world.file);
}

TEST_CASE("A bare name that is not registered lies in the program's folder, whose separator comes twice") {
  World world;
  std::string bare = "a.chm";
  CHECK(world.help.EnsureFileExists(bare));
  CHECK(bare == world.session.mod.AppFolder + "/a.chm");
  std::string absent = "b.chm";
  CHECK_FALSE(world.help.EnsureFileExists(absent));
  CHECK(absent == world.session.mod.AppFolder + "/b.chm");
}

TEST_CASE("The two files of the class are named, the first with the folder's separator twice") {
  World world;
  CHECK(world.help.HHSetHelpFile(1) == world.machine.folder.path() + "//Library.chm");
  CHECK(world.help.HHSetHelpFile(2) == "Library.txt");
  CHECK(world.help.HHSetHelpFile(0).empty());
  CHECK(world.help.HHSetHelpFile(3).empty());
}

TEST_CASE("A help file is registered by its name with its folder, and found there") {
  World world;
  world.help.HHRegister("/help/files/x.chm");
  CHECK(world.texts()[{Root::LocalMachine, HelpFilesKey, "x.chm"}] == "/help/files/");
  CHECK(world.told.empty());
  CHECK(world.help.HHCheckRegistry("x.chm"));
  CHECK(world.help.HHRegFileExists());
  CHECK(world.help.HHRegFilePath() == "/help/files/");
  CHECK(world.help.HHRegFileName() == "x.chm");
  CHECK_FALSE(world.help.HHCheckRegistry("y.chm"));
  CHECK_FALSE(world.help.HHRegFileExists());
  CHECK(world.help.HHRegFilePath().empty());
  CHECK(world.help.HHRegFileName().empty());

  world.help.HHUnRegister("/somewhere/x.chm");
  CHECK(world.texts().empty());
  CHECK(world.told.empty());
}

TEST_CASE("A folder without its separator is registered as well, and one without words is not") {
  World world;
  world.texts()[{Root::LocalMachine, HelpFilesKey, "x.chm"}] = "/help";
  world.texts()[{Root::LocalMachine, HelpFilesKey, "y.chm"}] = "";
  CHECK(world.help.HHCheckRegistry("x.chm"));
  CHECK(world.help.HHRegFilePath() == "/help/");
  CHECK_FALSE(world.help.HHCheckRegistry("y.chm"));
}

TEST_CASE("What is registered, or has no folder, is refused in words") {
  World world;
  world.help.HHRegister("/help/x.chm");
  world.help.HHRegister("/other/x.chm");
  world.help.HHRegister("x.chm");
  world.help.HHRegister("y.chm");
  const std::string registered =
      "The file x.chm is already registered.  HHRegister will not be run as no action need be taken.";
  CHECK(world.told == std::vector<std::string>{
                          RegisterTitle + (": " + registered), RegisterTitle + (": " + registered),
                          std::string(RegisterTitle) + ": Cannot register y.chm without having a supplied path.\""});
  CHECK(world.texts()[{Root::LocalMachine, HelpFilesKey, "x.chm"}] == "/help/");
  CHECK(world.texts().size() == 1);
}

TEST_CASE("What the registry refuses is told in its own words") {
  World world;
  world.machine.registry.refusal = RuntimeError(RuntimeError::PermissionDenied);
  world.help.HHRegister("/help/x.chm");
  world.help.HHUnRegister("x.chm");
  world.machine.registry.refusal.reset();
  world.help.HHUnRegister("x.chm");
  const std::string title = RegisterTitle;
  CHECK(world.told == std::vector<std::string>{title + ": Permission denied", title + ": Permission denied",
                                               title + ": Path not found"});
}

TEST_CASE("A system without help engine and browser is told both, and does not do") {
  World world;
  bool met = true;
  world.help.HHVerifyMinConfig(16, 256, met);
  CHECK_FALSE(met);
  CHECK(world.told ==
        std::vector<std::string>{"Error: Hhctrl.ocx is not registered.  Please install HTML Help.",
                                 "Error: Shdocvw.dll is not registered.  Please install Internet Explorer."});
  CHECK_FALSE(world.help.HHInstalled());
  CHECK(world.help.HHVersion().empty());
  CHECK(world.help.IEVersion().empty());
  CHECK(world.help.HHFriendlyName() == "unknown");
  CHECK(world.help.IEFriendlyName() == "unknown");
}

TEST_CASE("Help engine and browser that are registered but gone are told both") {
  World world;
  world.texts()[{Root::ClassesRoot, EngineKey, ""}] = "\"/gone/engine";
  world.texts()[{Root::ClassesRoot, BrowserKey, ""}] = "\"/gone/browser";
  bool met = true;
  world.help.HHVerifyMinConfig(16, 256, met);
  CHECK_FALSE(met);
  CHECK(world.told == std::vector<std::string>{
                          "Error: Hhctrl.ocx is not in its registered location.  Please reinstall HTML Help.",
                          "Error: Internet Explorer is not in its registered location.  Please reinstall Internet "
                          "Explorer."});
}

namespace {

/// A system with both, of these versions; the first character of what is registered is not part of the path.
struct FullWorld : World {
  FullWorld(FileVersion engine, FileVersion browser) {
    texts()[{Root::ClassesRoot, EngineKey, ""}] = "\xc3\xa4%where%/engine";
    texts()[{Root::ClassesRoot, BrowserKey, ""}] = "?" + (machine.folder / "browser");
    fakes::FakeFileVersions& files = machine.fileVersions;
    files.variables["%where%/engine"] = "/short/engine";
    files.longPaths["/short/engine"] = machine.folder / "engine";
    files.versions = {{machine.folder / "engine", engine}, {machine.folder / "browser", browser}};
    machine.folder.write("engine", "");
    machine.folder.write("browser", "");
  }

  bool meets(std::int32_t helpCode, std::int32_t browserCode) {
    bool met = false;
    help.HHVerifyMinConfig(helpCode, browserCode, met);
    return met;
  }
};

}  // namespace

TEST_CASE("Help engine and browser are found behind the first character of what is registered") {
  FullWorld world({4, 73, 8561, 0}, {5, 0, 2614, 3500});
  CHECK(world.meets(23, 269));
  CHECK(world.told.empty());
  CHECK(world.help.HHInstalled());
  CHECK(world.help.HHVersion() == "4.73.8561.00");
  CHECK(world.help.IEVersion() == "5.00.2614.3500");
  CHECK(world.help.HHFriendlyName() == "1.22");
  CHECK(world.help.IEFriendlyName() == "5.0b (Windows 98 SE)");
}

TEST_CASE("Both must be at least what is asked for, and an unknown code is never met") {
  FullWorld world({4, 73, 8252, 0}, {4, 72, 3110, 300});
  CHECK(world.meets(20, 263));
  CHECK(world.meets(16, 256));
  CHECK_FALSE(world.meets(21, 263));
  CHECK_FALSE(world.meets(20, 264));
  CHECK_FALSE(world.meets(24, 263));
  CHECK_FALSE(world.meets(20, 255));
  CHECK_FALSE(world.meets(15, 271));
  CHECK(world.help.HHFriendlyName() == "1.2");
}

TEST_CASE("A browser that is newer by number meets the code whose text is lower") {
  FullWorld world({4, 74, 8566, 0}, {5, 0, 518, 5000});
  CHECK(world.meets(23, 270));
  CHECK(world.meets(23, 265));
  CHECK_FALSE(world.meets(23, 266));
}

TEST_CASE("A file that bears no version meets nothing") {
  FullWorld world({4, 74, 8566, 0}, {5, 0, 518, 5000});
  world.machine.fileVersions.versions.clear();
  CHECK_FALSE(world.meets(16, 256));
  CHECK(world.help.HHInstalled());
  CHECK(world.help.HHVersion().empty());
  CHECK(world.told.empty());
}

TEST_CASE("A key is read by its name, and the system tells its version") {
  World world;
  world.texts()[{Root::ClassesRoot, "key", "name"}] = "text";
  world.machine.fileVersions.system = "5.1";
  CHECK(world.help.GetKeyInfo("key", "name") == "text");
  CHECK(world.help.GetKeyInfo("key", "").empty());
  CHECK(world.help.GetWindowsVersion() == "5.1");
}

}  // namespace trackloom
