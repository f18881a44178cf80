#include "engines/virtual/ShelfDiscs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>

#include "engines/ground/OpenFiles.h"
#include "engines/virtual/DiscFolder.h"
#include "runtime/Text.h"

namespace trackloom::engines::virtualrecorder {

namespace {

/// All files that a disc's folder can hold, those included that a kill left beside the ones they were to replace.
constexpr std::array discFiles{"disc.bin", "disc.iso", "disc.cue", "disc.cue.new", "disc.ini.new", "disc.ini"};
/// A disc on its way out; the dot keeps it out of every look.
constexpr const char* leavingName = ".deleted disc";
/// The longest name that Linux's file systems take, in bytes.
constexpr std::size_t longestName = 255;

ShelfDisc::State stateOf(const VirtualDisc& disc) {
  switch (disc.status) {
    case VirtualDisc::Status::Blank:
      return ShelfDisc::State::Blank;
    case VirtualDisc::Status::Open:
      return ShelfDisc::State::Open;
    case VirtualDisc::Status::Closed:
      return ShelfDisc::State::Closed;
    case VirtualDisc::Status::Writing:
      break;
  }
  return ShelfDisc::State::Spoilt;
}

void describe(ShelfDisc& facts, const VirtualDisc& disc) {
  facts.state = stateOf(disc);
  facts.rewritable = disc.medium == VirtualDisc::Medium::CdRw;
  facts.kind = disc.kind();
  const BlockKind kind = facts.kind.value_or(AudioBlocks);
  facts.size = disc.capacity(kind);
  facts.used = disc.end();
  facts.free = disc.state().freeBlocks(kind);
  facts.tracks = static_cast<std::int32_t>(disc.tracks().size());
}

std::int64_t lastChange(const FileDescriptor& place, const std::string& name) {
  struct stat status {};
  for (const std::string& path : {name + "/disc.ini", name})
    if (fstatat(place.get(), path.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) return status.st_mtim.tv_sec;
  return 0;
}

ShelfDisc factsOf(const FileDescriptor& place, const std::string& name) {
  ShelfDisc facts;
  facts.name = name;
  facts.changed = lastChange(place, name);
  try {
    describe(facts, DiscFolder(name, openFolder(place, name)).load());
  } catch (const std::runtime_error& damage) {
    facts.trouble = damage.what();
  }
  return facts;
}

bool isFileOfDisc(const FileDescriptor& disc, const std::string& entry) {
  return std::find(discFiles.begin(), discFiles.end(), entry) != discFiles.end() && !isFolder(disc, entry);
}

void requireNothingElse(const FileDescriptor& disc, const std::string& name) {
  for (const std::string& entry : entryNames(disc))
    if (!isFileOfDisc(disc, entry))
      throw ShelfRefusal("\"" + name + "\" was not deleted: it also holds \"" + entry +
                         "\", which is no part of a disc.");
}

void removeFiles(const FileDescriptor& disc) {
  for (const char* file : discFiles)
    if (unlinkat(disc.get(), file, 0) != 0 && errno != ENOENT) throwSystemError(std::string("cannot delete ") + file);
}

void removeFolder(const FileDescriptor& shelf, const std::string& name) {
  if (unlinkat(shelf.get(), name.c_str(), AT_REMOVEDIR) != 0) throwSystemError("cannot delete the folder " + name);
}

/// A kill in the midst of a deletion leaves this behind.
void finishOldDeletion(const FileDescriptor& shelf) {
  if (!isFolder(shelf, leavingName)) return;
  const FileDescriptor disc = openFolder(shelf, leavingName);
  requireNothingElse(disc, leavingName);
  removeFiles(disc);
  removeFolder(shelf, leavingName);
}

}  // namespace

std::vector<ShelfDisc> discsIn(const FileDescriptor& place) {
  std::vector<ShelfDisc> discs;
  for (const std::string& name : folderNames(place)) discs.push_back(factsOf(place, name));
  return discs;
}

void requireDisc(const FileDescriptor& shelf, const std::string& name) {
  const std::vector<std::string> names = folderNames(shelf);
  if (std::find(names.begin(), names.end(), name) == names.end())
    throw ShelfRefusal("There is no disc \"" + name + "\" on the shelf any more.");
}

void requireGoodName(const std::string& name) {
  const auto isControl = [](char sign) { return static_cast<unsigned char>(sign) < ' ' || sign == 0x7F; };
  if (Trim(name).empty()) throw ShelfRefusal("A disc needs a name.");
  if (name.front() == '.') throw ShelfRefusal("The name of a disc cannot begin with a dot.");
  if (name.find(HostSep) != std::string::npos) throw ShelfRefusal("The name of a disc cannot contain a slash.");
  if (std::any_of(name.begin(), name.end(), isControl))
    throw ShelfRefusal("The name of a disc cannot contain line breaks or other control characters.");
  if (name.size() > longestName)
    throw ShelfRefusal("This name is too long: it takes " + std::to_string(name.size()) + " bytes, and " +
                       std::to_string(longestName) + " are the most.");
}

void deleteDisc(const FileDescriptor& shelf, const std::string& name) {
  const FileDescriptor disc = openFolder(shelf, name);
  requireNothingElse(disc, name);
  finishOldDeletion(shelf);
  // Out of sight first, so that the recorder cannot take the disc meanwhile.
  if (!moveEntry(shelf, name, shelf, leavingName)) throw ShelfRefusal("\"" + name + "\" was not deleted.");
  try {
    removeFiles(disc);
    removeFolder(shelf, leavingName);
  } catch (const std::system_error&) {
    moveEntry(shelf, leavingName, shelf, name);
    throw;
  }
}

}  // namespace trackloom::engines::virtualrecorder
