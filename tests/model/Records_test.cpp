#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"
#include "model/DockState.h"
#include "model/MainBars.h"
#include "model/OptionsFile.h"
#include "model/OptionsRecord.h"
#include "model/QueueNumber.h"
#include "model/TrackRow.h"

namespace trackloom {

namespace {

/// A record in which every byte says where it stands.
std::string countedBytes() {
  std::string bytes;
  for (int at = 0; at < 276; ++at) bytes += static_cast<char>(static_cast<unsigned char>(at * 7 + 3));
  return bytes;
}

std::int16_t littleEndian(const std::string& bytes, std::size_t at) {
  return static_cast<std::int16_t>(static_cast<unsigned char>(bytes[at]) +
                                   256 * static_cast<unsigned char>(bytes[at + 1]));
}

std::string number(unsigned value) {
  std::string bytes;
  for (unsigned i = 0; i < 4; ++i) bytes += static_cast<char>(static_cast<unsigned char>((value >> (8 * i)) & 255U));
  return bytes;
}

std::string text(const std::string& words) {
  return number(static_cast<unsigned>(words.size())) + words;
}

/// A dock state with one tool, as its file holds it.
const std::string& dockFile() {
  static const std::string bytes = "TLDS0001" + number(0x12345678) + text("somewhere") + number(1) + text("panel1") +
                                   text("words") + number(0x87654321);
  return bytes;
}

struct Bars : Form {
  explicit Bars(FormHost& host) : Form(host, "Bars", "") {}
  DockStudio dock{*this, "dock", mainBars(), mainTools()};
};

}  // namespace

TEST_CASE("Each field of the options has its place in the record") {
  const std::string bytes = countedBytes();
  const OptionsRecord record = OptionsRecord::decode(bytes + "tail");
  CHECK(record.PromptSave == littleEndian(bytes, 0));
  CHECK(record.LastFolder == bytes.substr(2, 260));
  CHECK(record.SortMode == littleEndian(bytes, 262));
  CHECK(record.SavedDrive == littleEndian(bytes, 264));
  CHECK(record.ThemeColours == littleEndian(bytes, 266));
  CHECK(record.WinWidth == littleEndian(bytes, 268));
  CHECK(record.WinHeight == littleEndian(bytes, 270));
  CHECK(record.WinLeft == littleEndian(bytes, 272));
  CHECK(record.WinTop == littleEndian(bytes, 274));
  CHECK(record.encode() == bytes);
}

TEST_CASE("What a short record does not hold reads as zero") {
  CHECK(OptionsRecord::decode("") == OptionsRecord{});
  CHECK(OptionsRecord{}.encode() == std::string(276, '\0'));
  const OptionsRecord record = OptionsRecord::decode(std::string("\x01\x02/h", 4));
  CHECK(record.PromptSave == 0x201);
  CHECK(record.LastFolder == "/h" + std::string(258, '\0'));
  CHECK(record.SortMode == 0);
}

TEST_CASE("A first start asks before it drops, wears the theme and remembers nothing") {
  const std::string bytes = OptionsRecord::defaults().encode();
  CHECK(bytes ==
        std::string("\x01\0", 2) + std::string(260, ' ') + std::string("\0\0\0\0\x01\0", 6) + std::string(8, '\0'));
}

TEST_CASE("The last folder fills its field with blanks, and is cut at a whole character") {
  OptionsRecord record;
  record.setLastFolder("/music/");
  CHECK(record.LastFolder == "/music/" + std::string(253, ' '));
  record.setLastFolder(std::string(260, 'x'));
  CHECK(record.LastFolder == std::string(260, 'x'));
  record.setLastFolder(std::string(261, 'x'));
  CHECK(record.LastFolder == std::string(260, 'x'));
  record.setLastFolder(std::string(259, 'x') + "ü");
  CHECK(record.LastFolder == std::string(259, 'x') + " ");
  std::string umlauts;
  for (int i = 0; i < 150; ++i) umlauts += "ü";
  record.setLastFolder(umlauts);
  CHECK(record.LastFolder == umlauts.substr(0, 260));
  record.setLastFolder("");
  CHECK(record.LastFolder == std::string(260, ' '));
}

TEST_CASE("A dock state's file reads and writes as it is described") {
  const auto state = DockState::decode(dockFile());
  REQUIRE(state);
  CHECK(state->useThemeColours == 0x12345678);
  CHECK(state->arrangement == "somewhere");
  CHECK(state->tools == std::vector<DockState::ToolState>{{"panel1", "words", static_cast<std::int32_t>(0x87654321)}});
  CHECK(state->encode() == dockFile());
}

TEST_CASE("A dock state cut anywhere, or with anything behind it, is none") {
  for (std::size_t length = 0; length < dockFile().size(); ++length)
    CHECK_FALSE(DockState::decode(dockFile().substr(0, length)));
  CHECK_FALSE(DockState::decode(dockFile() + '\0'));
  std::string other = dockFile();
  other[7] = '2';
  CHECK_FALSE(DockState::decode(other));
}

TEST_CASE("A dock state takes its longest text and its greatest number of tools, and nothing beyond") {
  const std::string start = "TLDS0001" + number(1);
  const std::size_t longest = 1048576;
  CHECK(DockState::decode(start + text(std::string(longest, 'a')) + number(0)));
  CHECK_FALSE(DockState::decode(start + text(std::string(longest + 1, 'a')) + number(0)));
  const auto withTools = [&](unsigned count) {
    std::string bytes = start + text("") + number(count);
    for (unsigned i = 0; i < count; ++i) bytes += text("t") + text("") + number(i);
    return DockState::decode(bytes);
  };
  CHECK(withTools(256)->tools.size() == 256);
  CHECK_FALSE(withTools(257));
}

TEST_CASE("A dock state takes from the bars what they remember, once their face has said where they stand") {
  fakes::ScriptedDesk host;
  Bars bars(host);
  const Connection face = bars.dock.arrangementWanted.connect([&] { bars.dock.Arrangement = "left"; });
  bars.dock.UseThemeColours = 0;
  int value = 0;
  for (const char* name : {"panel1", "panel3", "panel2", "Progress1"}) {
    bars.dock.tool(name).Text = std::string("text of ") + name;
    bars.dock.tool(name).Value = ++value;
  }
  const DockState state = DockState::of(bars.dock);
  CHECK(state.useThemeColours == 0);
  CHECK(state.arrangement == "left");
  CHECK(state.tools == std::vector<DockState::ToolState>{{"panel1", "text of panel1", 1},
                                                         {"panel3", "text of panel3", 2},
                                                         {"panel2", "text of panel2", 3},
                                                         {"Progress1", "text of Progress1", 4}});
}

TEST_CASE("The bars take from a dock state all but tools that they do not have") {
  fakes::ScriptedDesk host;
  Bars bars(host);
  const DockState state{7, "right", {{"gone", "x", 1}, {"panel2", "words", 5}}};
  state.applyTo(bars.dock);
  CHECK(bars.dock.UseThemeColours == 1);
  CHECK(bars.dock.Arrangement == std::string("right"));
  CHECK(bars.dock.tool("panel2").Text == std::string("words"));
  CHECK(bars.dock.tool("panel2").Value == 5);
  DockState{0, "", {}}.applyTo(bars.dock);
  CHECK(bars.dock.UseThemeColours == 0);
}

TEST_CASE("A path is split behind its last separator") {
  const auto parts = [](const std::string& path) {
    const PathParts split = splitPathText(path);
    return split.folder + "|" + split.name + "|" + (split.hasFolder ? "+" : "-");
  };
  CHECK(parts("/a/b.mp3") == "/a/|b.mp3|+");
  CHECK(parts("/b") == "/|b|+");
  CHECK(parts("/a/") == "/a/||+");
  CHECK(parts("b.mp3") == "||-");
  CHECK(parts("") == "||-");
  // The folder's length is that of the trimmed path less that of the name, which keeps its blanks.
  CHECK(parts("/a/b  ") == "/|b  |+");
  CHECK(parts("/    ") == "|    |+");
}

TEST_CASE("A disc path is a folder of the disc, or its root, and the name") {
  CHECK(DiscPathOf("No Folder", "a.mp3").text == "\\a.mp3");
  CHECK(DiscPathOf("\\Rock", "a.mp3").text == "\\Rock\\a.mp3");
  CHECK(DiscPathOf("", "a.mp3").text == "\\a.mp3");
  CHECK(DiscPathOf("no folder", "a.mp3").text == "no folder\\a.mp3");
}

TEST_CASE("The number of a queued track is noted for the selected row's file alone") {
  fakes::LayoutMachine layout(AudioLayout);
  layout.addTrack("a.mp3", 10);
  layout.addTrack("b.mp3", 10);
  const HostPath first = sourcePath(layout.window().ListView1, 1);
  CHECK(first.text == layout.folder.path() + "/music/a.mp3");
  layout.window().QueueIndexOfSelection = 42;
  noteListedTrack(layout.session(), first, 7);
  CHECK(layout.window().QueueIndexOfSelection == 42);
  layout.window().ListView1.SelectRow(1);
  noteListedTrack(layout.session(), sourcePath(layout.window().ListView1, 2), 8);
  CHECK(layout.window().QueueIndexOfSelection == 42);
  noteListedTrack(layout.session(), first, 9);
  CHECK(layout.window().QueueIndexOfSelection == 9);
}

TEST_CASE("The main window that nobody has touched is at rest") {
  fakes::Machine machine;
  machine.start();
  CDWriterEvents nobody;
  const ListingWindow window(machine.desk, machine.session().ports, nobody);
  CHECK_FALSE(window.Loading);
  CHECK_FALSE(window.ClosingDuplicate);
  CHECK(window.DragRow == 0);
  CHECK(window.HoverRow == 0);
  CHECK(window.QueueIndexOfSelection == 0);
  CHECK(window.TotalTracks == 0);
  CHECK(window.TrackBlocks == 0);
  const Trackloom50Mod1 mod;
  CHECK_FALSE(mod.DriveOpen);
  CHECK(mod.CurrentDrive == 0);
  CHECK_FALSE(mod.LayoutOpen);
  CHECK(mod.Options.PromptSave == 0);
}

TEST_CASE(
    "A start without a file of options makes one of the defaults and maximises the window, one with a file does not") {
  fakes::Machine machine;
  machine.startQuietly();
  const auto stateAfterLoad = [&] {
    machine.window().placement = Placement{WindowState::Normal, 1, 2, 3, 4};
    LoadOptions(machine.session());
    return machine.window().placement.get();
  };
  machine.folder.write("Options.dat", "");
  CHECK(stateAfterLoad() == Placement{WindowState::Normal, 1, 2, 3, 4});
  CHECK(machine.mod().Options == OptionsRecord{});
  std::filesystem::remove(machine.folder / "Options.dat");
  CHECK(stateAfterLoad() == Placement{WindowState::Maximized, 1, 2, 3, 4});
  CHECK(machine.mod().Options == OptionsRecord::defaults());
  CHECK(machine.folder.read("Options.dat") == OptionsRecord::defaults().encode());
}

TEST_CASE("Before anything has happened the window and the shared state are at rest") {
  fakes::Machine machine;
  machine.startQuietly();
  const ListingWindow& window = machine.window();
  CHECK(window.TotalTracks == 0);
  CHECK(window.TrackBlocks == 0);
  CHECK(window.QueueIndexOfSelection == 0);
  CHECK_FALSE(window.ClosingDuplicate);
  const Trackloom50Mod1& mod = machine.mod();
  CHECK(mod.DiscBlocks == 0);
  CHECK(mod.DiscBytes == 0);
  CHECK(mod.LayoutType == 0);
  CHECK(mod.LayoutSaved);
  CHECK_FALSE(mod.LayoutHasFile);
  CHECK(mod.NextTrackNumber == 1);
  CHECK_FALSE(mod.TrackWontFit);
  CHECK(mod.ShowNoFolderOnly == 0);
  CHECK_FALSE(mod.SortChoiceCancelled);
  CHECK_FALSE(mod.RecordConfirmed);
  CHECK(mod.WritePhase == 0);
  CHECK(mod.CopiesWanted == 0);
  CHECK(mod.CopiesDone == 0);
  CHECK_FALSE(mod.WriteActive);
  CHECK_FALSE(mod.IsoWriteActive);
  CHECK_FALSE(mod.DiscCloseActive);
}

}  // namespace trackloom
