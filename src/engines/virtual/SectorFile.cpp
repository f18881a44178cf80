#include "engines/virtual/SectorFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr std::size_t gatherBytes = std::size_t{1} << 20;

EngineError writeFailure(std::int64_t block, int systemError) {
  return deviceError(sense::writeError, "write error at block " + std::to_string(block) + ": " +
                                            std::generic_category().message(systemError));
}

}  // namespace

SectorFile::SectorFile(FileDescriptor file, BlockKind kind)
    : file_(std::move(file)), sectorBytes_(static_cast<std::int64_t>(bytesOfSector(kind))) {
  gathered_.reserve(gatherBytes);
}

void SectorFile::put(std::int32_t block, std::span<const std::byte> sectors) {
  const std::int64_t offset = block * sectorBytes_;
  if (offset != position_ + std::ssize(gathered_)) {
    flush();
    position_ = offset;
  }
  while (!sectors.empty()) {
    const std::size_t taken = std::min(sectors.size(), gatherBytes - gathered_.size());
    gathered_.insert(gathered_.end(), sectors.begin(), sectors.begin() + static_cast<std::ptrdiff_t>(taken));
    sectors = sectors.subspan(taken);
    if (gathered_.size() == gatherBytes) flush();
  }
}

void SectorFile::flush() {
  const std::size_t written = writeAt(file_, gathered_, position_);
  position_ += static_cast<std::int64_t>(written);
  if (written != gathered_.size()) throw writeFailure(position_ / sectorBytes_, errno);
  // The disk begins at once, so that the end has little to wait for. A failure is told there.
  ::sync_file_range(file_.get(), position_ - std::ssize(gathered_), std::ssize(gathered_), SYNC_FILE_RANGE_WRITE);
  gathered_.clear();
}

void SectorFile::finish() {
  flush();
  if (fsync(file_.get()) != 0) throw writeFailure(position_ / sectorBytes_, errno);
}

}  // namespace trackloom::engines::virtualrecorder
