#include "model/MainBars.h"

namespace trackloom {

std::vector<BarDesign> mainBars() {
  return {
      {"Main Menu", BarKind::Menu, {"mnuFile", "mnuActions", "mnuTools", "mnuHelp"}},
      {"Tool Bar 1",
       BarKind::Tools,
       {"New", "Open", "AddFiles", "Search", "CDFolder", "Delete", "Record", "Print", "Ripper", "mainHelp"}},
      {"StatusBar1", BarKind::Status, {"panel1", "panel3", "panel2"}},
      {"StatusBar2", BarKind::Status, {"Progress1"}},
      {"Tool Bar 2", BarKind::Tools, {"cboMainDrive"}},
  };
}

std::vector<ToolDesign> mainTools() {
  constexpr auto Menu = ToolKind::Menu;
  constexpr auto Command = ToolKind::Command;
  constexpr auto DropDown = ToolKind::DropDown;
  constexpr auto Panel = ToolKind::Panel;
  const std::vector<std::string> folderEntries{"ShowNoFolder", "ShowAll"};
  return {
      {"mnuFile",
       Menu,
       "&File",
       "",
       "",
       {"mnuFileNew", "mnuFileOpen", "mnuFileSave", "mnuFileSaveAs", "mnuFilePrint", "mnuFileWrite", "mnuFileClose",
        "mnuFileExit"}},
      {"mnuFileNew", Command, "&New CD Layout...", "New", "Ctrl+N", {}},
      {"mnuFileOpen", Command, "&Open CD Layout...", "Open", "Ctrl+O", {}},
      {"mnuFileSave", Command, "&Save...", "Save", "Ctrl+S", {}},
      {"mnuFileSaveAs", Command, "Save &As...", "", "", {}},
      {"mnuFilePrint", Command, "&Print Track Listing...", "print", "Ctrl+P", {}},
      {"mnuFileWrite", Command, "&Write ISO Image...", "ISO", "", {}},
      {"mnuFileClose", Command, "&Close CD Layout", "", "Ctrl+W", {}},
      {"mnuFileExit", Command, "E&xit Trackloom", "", "", {}},
      {"mnuActions",
       Menu,
       "&Actions",
       "",
       "",
       {"mnuActionsAdd", "mnuActionsSearch", "mnuActionsDelete", "mnuActionsPlay", "mnuActionsFolder",
        "mnuActionsRecord", "mnuActionsCreate"}},
      {"mnuActionsAdd", Command, "&Add Audio Files...", "AddFiles", "Ctrl+A", {}},
      {"mnuActionsSearch", Command, "&Search...", "Search", "", {}},
      {"mnuActionsDelete", Command, "&Delete Selected Track", "Delete", "Del", {}},
      {"mnuActionsPlay", Command, "&Play Selected Track", "Sound", "", {}},
      {"mnuActionsFolder", Menu, "CD Folder", "CDFolder", "", folderEntries},
      {"mnuActionsRecord", Command, "&Record CD", "CreateCD", "Ctrl+R", {}},
      {"mnuActionsCreate", Command, "Create &ISO Image...", "ISO", "", {}},
      {"ShowNoFolder", Command, "Show Only No Folder Entries", "CDFolder", "", {}},
      {"ShowAll", Command, "Show All Entries", "CDFolder", "", {}},
      {"mnuTools",
       Menu,
       "&Tools",
       "",
       "",
       {"mnuToolsEject", "mnuToolsInformation", "mnuToolsErase", "mnuToolsOptions", "mnuToolsRipper"}},
      {"mnuToolsEject", Command, "&Eject CD", "Arrow", "", {}},
      {"mnuToolsInformation", Command, "&CD Information...", "CDInfo", "", {}},
      {"mnuToolsErase", Command, "E&rase CDRW Disc...", "Drive", "", {}},
      {"mnuToolsOptions", Command, "&Default Options...", "Settings", "", {}},
      {"mnuToolsRipper", Command, "CD R&ipper", "cdripper", "", {}},
      {"mnuHelp", Menu, "&Help", "", "", {"mnuHelpContents", "mnuHelpWeb", "mnuHelpAbout"}},
      {"mnuHelpContents", Command, "&Contents", "Help", "F1", {}},
      {"mnuHelpWeb", Command, "Trackloom &Web Site", "", "", {}},
      {"mnuHelpAbout", Command, "&About Trackloom", "", "", {}},
      {"New", Command, "New", "New", "", {}},
      {"Open", Command, "Open", "Open", "", {}},
      {"AddFiles", Command, "Add Audio Files", "AddFiles", "", {}},
      {"Search", Command, "Search", "Search", "", {}},
      {"CDFolder", DropDown, "CD Folder", "CDFolder", "", folderEntries},
      {"Delete", Command, "Delete", "Delete", "", {}},
      {"Record", Command, "Record CD", "CreateCD", "", {}},
      {"Print", Command, "Print", "print", "", {}},
      {"Ripper", Command, "CD Ripper", "cdripper", "", {}},
      {"mainHelp", Command, "Help", "Help", "", {}},
      {"panel1", Panel, "For Help, Press F1", "", "", {}},
      {"panel3", Panel, "", "", "", {}},
      {"panel2", Panel, "", "", "", {}},
      {"Progress1", ToolKind::Progress, "", "", "", {}},
      {"cboMainDrive", ToolKind::Combo, "Drive", "Drive", "", {}},
  };
}

}  // namespace trackloom
