#include "engines/virtual/FolderShelf.h"

#include <algorithm>
#include <system_error>

#include "engines/virtual/RecorderFolder.h"
#include "engines/virtual/ShelfDiscs.h"
#include "engines/virtual/VirtualChange.h"
#include "runtime/Files.h"

namespace trackloom::engines::virtualrecorder {

namespace {

/// Does what a user asked for; what the system or the recorder says against it becomes the refusal.
template <class Deed>
void perform(const Deed& deed) {
  try {
    deed();
  } catch (const EngineError& error) {
    throw ShelfRefusal(error.words());
  } catch (const std::system_error& error) {
    throw ShelfRefusal(error.what());
  }
}

/// A place that cannot be read shows no discs.
template <class Place>
std::vector<ShelfDisc> discsOf(const Place& place) {
  try {
    return discsIn(place());
  } catch (const std::system_error&) {
    return {};
  }
}

void requireNotAtWork(const RecorderFolder& recorder, const FileDescriptor& shelf, const std::string& name) {
  const auto discs = discsIn(shelf);
  const auto disc = std::find_if(discs.begin(), discs.end(), [&](const ShelfDisc& each) { return each.name == name; });
  if (disc != discs.end() && disc->state == ShelfDisc::State::Spoilt && recorder.isBusy())
    throw ShelfRefusal("\"" + name + "\" may be the disc that is being written just now.");
}

VirtualDisc blank(BlankDisc kind) {
  VirtualDisc disc;
  if (kind == BlankDisc::CdRw80) disc.medium = VirtualDisc::Medium::CdRw;
  if (kind == BlankDisc::CdR74) disc.audioBlocks = disc.dataBlocks = blocksOf74Minutes;
  return disc;
}

bool trayHas(const RecorderFolder& recorder, const std::string& name) {
  try {
    return entryExists(recorder.tray(), name);
  } catch (const std::system_error&) {
    return false;
  }
}

/// As an eject does it, but that no blank disc follows.
void openTray(const RecorderFolder& recorder) {
  if (recorder.trayIsEmpty()) return;
  if (recorder.settings().refuseEject) throw ShelfRefusal("The tray is stuck.");
  if (const auto disc = recorder.discInTray()) mendCueSheetOf(*disc);
  recorder.clearTray();
}

}  // namespace

bool FolderShelf::present() {
  return FolderExists(folder_);
}

ShelfView FolderShelf::look() {
  ShelfView view;
  try {
    const RecorderFolder recorder(folder_);
    view.present = true;
    view.busy = recorder.isBusy();
    view.tray = discsOf([&] { return recorder.tray(); });
    view.shelf = discsOf([&] { return recorder.shelf(); });
  } catch (const std::system_error&) {
    return view;
  }
  for (ShelfDisc& disc : view.tray)
    if (view.busy && disc.state == ShelfDisc::State::Spoilt) disc.state = ShelfDisc::State::AtWork;
  return view;
}

void FolderShelf::eject() {
  perform([this] { recorder_.eject(); });
}

void FolderShelf::insert(const std::string& disc) {
  perform([&] {
    const RecorderFolder recorder(folder_);
    if (!recorder.lock()) throw ShelfRefusal("The recorder is at work, and its tray stays shut.");
    const FileDescriptor shelf = recorder.shelf();
    requireDisc(shelf, disc);
    openTray(recorder);
    if (!moveEntry(shelf, disc, recorder.tray(), disc))
      throw ShelfRefusal("Something else of the name \"" + disc + "\" lies in the tray.");
  });
}

void FolderShelf::addBlank(BlankDisc kind) {
  perform([&] {
    const RecorderFolder recorder(folder_);
    recorder.addDisc(recorder.makeShelf(), blank(kind));
  });
}

void FolderShelf::rename(const std::string& disc, const std::string& newName) {
  perform([&] {
    const RecorderFolder recorder(folder_);
    const FileDescriptor shelf = recorder.shelf();
    requireDisc(shelf, disc);
    requireGoodName(newName);
    if (newName == disc) return;
    if (trayHas(recorder, newName) || !moveEntry(shelf, disc, shelf, newName))
      throw ShelfRefusal("There is a disc \"" + newName + "\" already.");
  });
}

void FolderShelf::remove(const std::string& disc) {
  perform([&] {
    const RecorderFolder recorder(folder_);
    const FileDescriptor shelf = recorder.shelf();
    requireDisc(shelf, disc);
    requireNotAtWork(recorder, shelf, disc);
    deleteDisc(shelf, disc);
  });
}

std::vector<std::shared_ptr<DiscShelf>> shelvesOf(const HostPath& programFolder, const RecorderList& recorders) {
  std::vector<std::shared_ptr<DiscShelf>> shelves;
  for (const auto& recorder : recorders)
    shelves.push_back(std::make_shared<FolderShelf>(HostPath(EnsureTrailingSep(programFolder.text) + recorder->id())));
  return shelves;
}

}  // namespace trackloom::engines::virtualrecorder
