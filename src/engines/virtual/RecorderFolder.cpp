#include "engines/virtual/RecorderFolder.h"

#include <sys/file.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <string_view>
#include <system_error>
#include <thread>

#include "runtime/IniFile.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr const char* settingsName = "recorder.ini";
constexpr const char* trayName = "tray";
constexpr const char* shelfName = "shelf";
/// A disc in the making; the dot keeps it out of every look.
constexpr const char* unfinishedName = ".new disc";
constexpr std::string_view discPrefix = "Disc ";

/// The number of a disc that this recorder named; 0 for other names.
std::int32_t numberIn(std::string_view name) {
  if (!name.starts_with(discPrefix)) return 0;
  name.remove_prefix(discPrefix.size());
  std::int32_t number = 0;
  const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  const bool whole = error == std::errc{} && stop == name.data() + name.size();
  return whole && number > 0 && number < 1000000000 ? number : 0;
}

std::int32_t highestNumber(const std::vector<std::string>& names) {
  std::int32_t highest = 0;
  for (const std::string& name : names) highest = std::max(highest, numberIn(name));
  return highest;
}

std::string discName(std::int32_t number) {
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), "Disc %04d", number);
  return name.data();
}

/// Also files and links may bear the name of a disc, so the first free number is found by trying.
void moveUnderNewName(const FileDescriptor& from, const std::string& name, const FileDescriptor& to,
                      std::int32_t number) {
  while (!moveEntry(from, name, to, discName(number))) ++number;
}

bool isBlankCdR(const FileDescriptor& shelf, const std::string& name) {
  try {
    const VirtualDisc content = DiscFolder(name, openFolder(shelf, name)).load();
    return content.status == VirtualDisc::Status::Blank && content.medium == VirtualDisc::Medium::CdR;
  } catch (const std::runtime_error&) {
    return false;
  }
}

}  // namespace

RecorderSettings RecorderFolder::settings() const {
  try {
    return RecorderSettings::parse(readSmallFile(folder_, settingsName, IniFile::sizeLimit));
  } catch (const std::system_error&) {
    return {};
  }
}

FileDescriptor RecorderFolder::tray() const {
  return openFolder(folder_, trayName);
}

FileDescriptor RecorderFolder::shelf() const {
  return openFolder(folder_, shelfName);
}

FileDescriptor RecorderFolder::makeShelf() const {
  return makeFolder(folder_, shelfName);
}

std::optional<DiscFolder> RecorderFolder::discInTray() const {
  const FileDescriptor inTray = tray();
  const std::vector<std::string> names = folderNames(inTray);
  if (names.size() != 1) return std::nullopt;
  return DiscFolder(names.front(), openFolder(inTray, names.front()));
}

FolderStamp RecorderFolder::stamp() const {
  FolderStamp stamp;
  stamp.add(folder_);
  stamp.add(folder_, settingsName);
  stamp.add(tray());
  if (const std::optional<DiscFolder> disc = discInTray()) disc->stamp(stamp);
  return stamp;
}

bool RecorderFolder::trayIsEmpty() const {
  return folderNames(tray()).empty();
}

bool RecorderFolder::lock() const {
  // Who asks whether the recorder is busy has it for a moment, and eject and insert have it for little more, but on a
  // machine under load each may lose the processor meanwhile.
  constexpr std::chrono::milliseconds moment{1};
  for (int tries = 250; flock(folder_.get(), LOCK_EX | LOCK_NB) != 0; --tries) {
    if (errno != EWOULDBLOCK) throwSystemError("cannot lock the recorder's folder");
    if (tries == 0) return false;
    std::this_thread::sleep_for(moment);
  }
  return true;
}

bool RecorderFolder::isBusy() const {
  if (flock(folder_.get(), LOCK_SH | LOCK_NB) != 0) return errno == EWOULDBLOCK;
  flock(folder_.get(), LOCK_UN);
  return false;
}

void RecorderFolder::clearTray() const {
  const FileDescriptor from = tray();
  const FileDescriptor to = makeShelf();
  for (const std::string& name : folderNames(from))
    if (!moveEntry(from, name, to, name)) moveUnderNewName(from, name, to, nextNumber());
}

void RecorderFolder::feedBlank() const {
  if (!feedFromShelf()) addDisc(tray(), VirtualDisc{});
}

bool RecorderFolder::feedFromShelf() const {
  const FileDescriptor to = tray();
  const FileDescriptor from = makeShelf();
  for (const std::string& name : folderNames(from))
    if (isBlankCdR(from, name)) return moveEntry(from, name, to, name);
  return false;
}

void RecorderFolder::addDisc(const FileDescriptor& place, const VirtualDisc& disc) const {
  DiscFolder(unfinishedName, makeFolder(place, unfinishedName)).save(disc);
  moveUnderNewName(place, unfinishedName, place, nextNumber());
}

std::int32_t RecorderFolder::nextNumber() const {
  const std::int32_t inTray = highestNumber(folderNames(tray()));
  const std::int32_t onShelf = highestNumber(folderNames(makeShelf()));
  return std::max(inTray, onShelf) + 1;
}

void RecorderFolder::layOut() const {
  if (!entryExists(folder_, settingsName)) replaceFile(folder_, settingsName, RecorderSettings::defaultIni());
  makeShelf();
  const bool hadTray = entryExists(folder_, trayName);
  makeFolder(folder_, trayName);
  if (!hadTray) feedBlank();
}

}  // namespace trackloom::engines::virtualrecorder
