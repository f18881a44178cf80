#include "engines/virtual/DiscFolder.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <system_error>
#include <utility>

#include "runtime/IniFile.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr const char* descriptionName = "disc.ini";
constexpr const char* cueSheetName = "disc.cue";

const char* sectorsName(BlockKind kind) {
  return kind == AudioBlocks ? "disc.bin" : "disc.iso";
}

void requireSize(const FileDescriptor& folder, BlockKind kind, const VirtualDisc& disc) {
  const bool holdsKind = !disc.sessions.empty() && disc.sessions.front().tracks.front().kind == kind;
  const std::int64_t expected = holdsKind ? std::int64_t{disc.end()} * sectorBytes(kind) : 0;
  const std::int64_t size = fileSize(folder, sectorsName(kind)).value_or(0);
  if (size != expected)
    throw DamagedDisc(std::string(sectorsName(kind)) + " has " + std::to_string(size) + " bytes, and disc.ini says " +
                      std::to_string(expected));
}

}  // namespace

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

void DiscFolder::saveCueSheet(const VirtualDisc& disc) const {
  replaceFile(folder_, cueSheetName, disc.cueSheet());
}

FileDescriptor DiscFolder::openSectors(BlockKind kind) const {
  return openFile(folder_, sectorsName(kind), O_WRONLY | O_CREAT);
}

void DiscFolder::dropEmptySectors(BlockKind kind) const {
  if (fileSize(folder_, sectorsName(kind)) == 0) unlinkat(folder_.get(), sectorsName(kind), 0);
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
