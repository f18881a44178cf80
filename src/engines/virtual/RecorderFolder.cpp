#include "engines/virtual/RecorderFolder.h"

#include <sys/file.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <string_view>
#include <system_error>

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

std::optional<DiscFolder> RecorderFolder::discInTray() const {
  const FileDescriptor tray = openFolder(folder_, trayName);
  const std::vector<std::string> names = folderNames(tray);
  if (names.size() != 1) return std::nullopt;
  return DiscFolder(names.front(), openFolder(tray, names.front()));
}

FolderStamp RecorderFolder::stamp() const {
  FolderStamp stamp;
  stamp.add(folder_);
  stamp.add(folder_, settingsName);
  const FileDescriptor tray = openFolder(folder_, trayName);
  stamp.add(tray);
  if (const std::optional<DiscFolder> disc = discInTray()) disc->stamp(stamp);
  return stamp;
}

bool RecorderFolder::trayIsEmpty() const {
  return folderNames(openFolder(folder_, trayName)).empty();
}

bool RecorderFolder::lock() const {
  if (flock(folder_.get(), LOCK_EX | LOCK_NB) == 0) return true;
  if (errno == EWOULDBLOCK) return false;
  throwSystemError("cannot lock the recorder's folder");
}

void RecorderFolder::clearTray() const {
  const FileDescriptor tray = openFolder(folder_, trayName);
  const FileDescriptor shelf = makeFolder(folder_, shelfName);
  for (const std::string& name : folderNames(tray))
    if (!moveEntry(tray, name, shelf, name)) moveUnderNewName(tray, name, shelf, nextNumber());
}

void RecorderFolder::feedBlank() const {
  if (!feedFromShelf()) feedNew();
}

bool RecorderFolder::feedFromShelf() const {
  const FileDescriptor tray = openFolder(folder_, trayName);
  const FileDescriptor shelf = makeFolder(folder_, shelfName);
  for (const std::string& name : folderNames(shelf))
    if (isBlankCdR(shelf, name)) return moveEntry(shelf, name, tray, name);
  return false;
}

void RecorderFolder::feedNew() const {
  const FileDescriptor tray = openFolder(folder_, trayName);
  DiscFolder(unfinishedName, makeFolder(tray, unfinishedName)).save(VirtualDisc{});
  moveUnderNewName(tray, unfinishedName, tray, nextNumber());
}

std::int32_t RecorderFolder::nextNumber() const {
  const std::int32_t inTray = highestNumber(folderNames(openFolder(folder_, trayName)));
  const std::int32_t onShelf = highestNumber(folderNames(makeFolder(folder_, shelfName)));
  return std::max(inTray, onShelf) + 1;
}

void RecorderFolder::layOut() const {
  if (!entryExists(folder_, settingsName)) replaceFile(folder_, settingsName, RecorderSettings::defaultIni());
  makeFolder(folder_, shelfName);
  const bool hadTray = entryExists(folder_, trayName);
  makeFolder(folder_, trayName);
  if (!hadTray) feedBlank();
}

}  // namespace trackloom::engines::virtualrecorder
