#include "engines/virtual/SectorFile.h"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/virtual/DiscFolder.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr std::size_t gatherBytes = std::size_t{1} << 20;

EngineError writeFailure(std::int64_t block, int systemError) {
  return deviceError(sense::writeError, "write error at block " + std::to_string(block) + ": " +
                                            std::generic_category().message(systemError));
}

}  // namespace

SectorFile::SectorFile(FileDescriptor file, BlockKind kind) : file_(std::move(file)), sectorBytes_(sectorBytes(kind)) {
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
  std::span<const std::byte> left = gathered_;
  std::int64_t offset = position_;
  while (!left.empty()) {
    const ssize_t written = pwrite(file_.get(), left.data(), left.size(), offset);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) throw writeFailure(offset / sectorBytes_, written == 0 ? EIO : errno);
    left = left.subspan(static_cast<std::size_t>(written));
    offset += written;
  }
  position_ = offset;
  gathered_.clear();
}

void SectorFile::finish() {
  flush();
  if (fsync(file_.get()) != 0) throw writeFailure(position_ / sectorBytes_, errno);
}

}  // namespace trackloom::engines::virtualrecorder
