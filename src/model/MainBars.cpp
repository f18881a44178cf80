#include "model/MainBars.h"

#include <iterator>

namespace trackloom {

namespace {

using Tools = std::vector<ToolDesign>;

ToolDesign command(const char* name, const char* caption, const char* picture = "", const char* shortcut = "") {
  return {name, ToolKind::Command, caption, picture, shortcut, {}};
}

/// The two entries that the folder menu and the folder button both open.
std::vector<std::string> folderEntries() {
  return {"ShowNoFolder", "ShowAll"};
}

/// A menu and its entries in order.
Tools menu(const char* name, const char* caption, Tools entries) {
  ToolDesign opener{name, ToolKind::Menu, caption, "", "", {}};
  for (const ToolDesign& entry : entries) opener.children.push_back(entry.name);
  entries.insert(entries.begin(), std::move(opener));
  return entries;
}

Tools fileMenu() {
  return menu("mnuFile", "&File",
              {
                  command("mnuFileNew", "&New CD Layout...", "New", "Ctrl+N"),
                  command("mnuFileOpen", "&Open CD Layout...", "Open", "Ctrl+O"),
                  command("mnuFileSave", "&Save...", "Save", "Ctrl+S"),
                  command("mnuFileSaveAs", "Save &As..."),
                  command("mnuFilePrint", "&Print Track Listing...", "print", "Ctrl+P"),
                  command("mnuFileWrite", "&Write ISO Image...", "ISO"),
                  command("mnuFileClose", "&Close CD Layout", "", "Ctrl+W"),
                  command("mnuFileExit", "E&xit Trackloom"),
              });
}

Tools actionsMenu() {
  return menu("mnuActions", "&Actions",
              {
                  command("mnuActionsAdd", "&Add Audio Files...", "AddFiles", "Ctrl+A"),
                  command("mnuActionsSearch", "&Search...", "Search"),
                  command("mnuActionsDelete", "&Delete Selected Track", "Delete", "Del"),
                  command("mnuActionsPlay", "&Play Selected Track", "Sound"),
                  {"mnuActionsFolder", ToolKind::Menu, "CD Folder", "CDFolder", "", folderEntries()},
                  command("mnuActionsRecord", "&Record CD", "CreateCD", "Ctrl+R"),
                  command("mnuActionsCreate", "Create &ISO Image...", "ISO"),
              });
}

Tools toolsMenu() {
  return menu("mnuTools", "&Tools",
              {
                  command("mnuToolsEject", "&Eject CD", "Arrow"),
                  command("mnuToolsInformation", "&CD Information...", "CDInfo"),
                  command("mnuToolsErase", "E&rase CDRW Disc...", "Drive"),
                  command("mnuToolsOptions", "&Default Options...", "Settings"),
                  command("mnuToolsRipper", "CD R&ipper", "cdripper"),
              });
}

Tools helpMenu() {
  return menu("mnuHelp", "&Help",
              {
                  command("mnuHelpContents", "&Contents", "Help", "F1"),
                  command("mnuHelpWeb", "Trackloom &Web Site"),
                  command("mnuHelpAbout", "&About Trackloom"),
              });
}

Tools toolBars() {
  return {
      command("New", "New", "New"),
      command("Open", "Open", "Open"),
      command("AddFiles", "Add Audio Files", "AddFiles"),
      command("Search", "Search", "Search"),
      {"CDFolder", ToolKind::DropDown, "CD Folder", "CDFolder", "", folderEntries()},
      command("ShowNoFolder", "Show Only No Folder Entries", "CDFolder"),
      command("ShowAll", "Show All Entries", "CDFolder"),
      command("Delete", "Delete", "Delete"),
      command("Record", "Record CD", "CreateCD"),
      command("Print", "Print", "print"),
      command("Ripper", "CD Ripper", "cdripper"),
      command("mainHelp", "Help", "Help"),
      {"cboMainDrive", ToolKind::Combo, "Drive", "Drive", "", {}},
  };
}

Tools statusBars() {
  return {
      {"panel1", ToolKind::Panel, "For Help, Press F1", "", "", {}},
      {"panel3", ToolKind::Panel, "", "", "", {}},
      {"panel2", ToolKind::Panel, "", "", "", {}},
      {"Progress1", ToolKind::Progress, "", "", "", {}},
  };
}

}  // namespace

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
  Tools all;
  for (Tools part : {fileMenu(), actionsMenu(), toolsMenu(), helpMenu(), toolBars(), statusBars()})
    std::move(part.begin(), part.end(), std::back_inserter(all));
  return all;
}

}  // namespace trackloom
