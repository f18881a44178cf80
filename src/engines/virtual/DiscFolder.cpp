#include "engines/virtual/DiscFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <optional>
#include <system_error>
#include <utility>

#include "engines/ground/Blocks.h"
#include "runtime/IniFile.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr const char* descriptionName = "disc.ini";
constexpr const char* cueSheetName = "disc.cue";

const char* sectorsName(BlockKind kind) {
  return kind == AudioBlocks ? "disc.bin" : "disc.iso";
}

/// Where a block lies in the file of its kind.
std::int64_t placeOf(BlockKind kind, std::int32_t block) {
  return block * static_cast<std::int64_t>(bytesOfSector(kind));
}

void requireSize(const FileDescriptor& folder, BlockKind kind, const VirtualDisc& disc) {
  const std::int64_t expected = placeOf(kind, disc.end(kind));
  const std::int64_t size = fileSize(folder, sectorsName(kind)).value_or(0);
  if (size != expected)
    throw DamagedDisc(std::string(sectorsName(kind)) + " has " + std::to_string(size) + " bytes, and disc.ini says " +
                      std::to_string(expected));
}

}  // namespace

std::string DiscFolder::id() const {
  struct stat status {};
  if (fstat(folder_.get(), &status) != 0) throwSystemError("cannot look at " + name_);
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

VirtualDisc DiscFolder::load() const {
  try {
    std::string ini = readSmallFile(folder_, descriptionName, IniFile::sizeLimit);
    for (;;) {
      try {
        return understood(ini);
      } catch (const DamagedDisc&) {
        // A write may begin or end between the looks at disc.ini and at the sectors, and then they do not belong
        // together.
        std::string now = readSmallFile(folder_, descriptionName, IniFile::sizeLimit);
        if (now == ini) throw;
        ini = std::move(now);
      }
    }
  } catch (const std::system_error& error) {
    throw DamagedDisc(error.what());
  }
}

VirtualDisc DiscFolder::understood(const std::string& ini) const {
  VirtualDisc disc = VirtualDisc::parse(ini);
  // What a write left behind that did not end is no length that anyone could know.
  if (disc.status != VirtualDisc::Status::Writing)
    for (const BlockKind kind : {AudioBlocks, DataBlocks}) requireSize(folder_, kind, disc);
  return disc;
}

void DiscFolder::save(const VirtualDisc& disc) const {
  replaceFile(folder_, descriptionName, disc.ini());
}

void DiscFolder::record(const VirtualDisc& disc) const {
  std::optional<Replacement> cueSheet;
  if (disc.kind() == AudioBlocks) cueSheet.emplace(folder_, cueSheetName, disc.cueSheet());
  save(disc);
  if (cueSheet) cueSheet->putInPlace();
}

void DiscFolder::mendCueSheet(const VirtualDisc& disc) const {
  const bool listed = disc.kind() == AudioBlocks && !disc.isMixed();
  if (!listed || disc.status == VirtualDisc::Status::Writing) return;
  const std::string right = disc.cueSheet();
  const bool there = fileSize(folder_, cueSheetName) == std::ssize(right);
  if (!there || readSmallFile(folder_, cueSheetName, right.size()) != right) replaceFile(folder_, cueSheetName, right);
}

FileDescriptor DiscFolder::openSectors(BlockKind kind) const {
  FileDescriptor file = openFile(folder_, sectorsName(kind), O_WRONLY);
  struct stat status {};
  if (fstat(file.get(), &status) != 0) throwSystemError(std::string("cannot look at ") + sectorsName(kind));
  if (status.st_nlink == 1) return file;
  errno = EMLINK;
  throwSystemError(std::string(sectorsName(kind)) + " has another name, under which it would change too");
}

FileDescriptor DiscFolder::makeSectors(BlockKind kind) const {
  return makeNewFile(folder_, sectorsName(kind));
}

void DiscFolder::dropEmptySectors(BlockKind kind) const {
  if (fileSize(folder_, sectorsName(kind)) == 0) unlinkat(folder_.get(), sectorsName(kind), 0);
}

void DiscFolder::removeSectors() const {
  for (const char* name : {cueSheetName, sectorsName(AudioBlocks), sectorsName(DataBlocks)})
    if (unlinkat(folder_.get(), name, 0) != 0 && errno != ENOENT)
      throwSystemError(std::string("cannot remove ") + name);
}

std::vector<std::byte> DiscFolder::readSectors(BlockKind kind, std::int32_t block, std::int32_t count) const {
  const FileDescriptor file = openFile(folder_, sectorsName(kind), O_RDONLY);
  std::vector<std::byte> sectors(static_cast<std::size_t>(count) * bytesOfSector(kind));
  if (readAt(file, sectors, placeOf(kind, block)) != sectors.size() && errno != 0)
    throwSystemError(std::string("cannot read ") + sectorsName(kind));
  return sectors;
}

void DiscFolder::stamp(FolderStamp& stamp) const {
  stamp.add(folder_);
  for (const char* name : {descriptionName, sectorsName(AudioBlocks), sectorsName(DataBlocks)})
    stamp.add(folder_, name);
}

std::int64_t DiscFolder::roomOnHost() const {
  struct statvfs status {};
  // Some network file systems do not tell, and say that they have no blocks at all.
  if (fstatvfs(folder_.get(), &status) != 0 || status.f_blocks == 0) return std::numeric_limits<std::int64_t>::max();
  const auto bytes = static_cast<unsigned __int128>(status.f_bavail) * status.f_frsize;
  constexpr auto most = static_cast<unsigned __int128>(std::numeric_limits<std::int64_t>::max());
  return static_cast<std::int64_t>(std::min(bytes, most));
}

}  // namespace trackloom::engines::virtualrecorder
