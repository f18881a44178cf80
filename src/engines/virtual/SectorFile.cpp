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

/// Lets the disk begin with what lies between, so that it is at work while more sectors come, and the end has little to
/// wait for. Pages that are not full yet are left alone. Only the end tells of failures.
void startTheDisk(const FileDescriptor& file, std::int64_t begin, std::int64_t end) {
  constexpr std::int64_t page = 4096;
  const std::int64_t first = begin / page * page;
  const std::int64_t length = end / page * page - first;
  if (length > 0) sync_file_range(file.get(), first, length, SYNC_FILE_RANGE_WRITE);
}

}  // namespace

SectorFile::SectorFile(FileDescriptor file, BlockKind kind)
    : file_(std::move(file)),
      sectorBytes_(static_cast<std::int64_t>(bytesOfSector(kind))),
      memory_(std::make_unique_for_overwrite<std::byte[]>(gatherBytes)) {}

std::span<std::byte> SectorFile::room(std::int32_t block, std::int32_t count) {
  const std::int64_t offset = block * sectorBytes_;
  const auto size = static_cast<std::size_t>(count * sectorBytes_);
  if (offset != position_ + static_cast<std::int64_t>(gathered_) || gathered_ + size > gatherBytes) flush();
  if (gathered_ == 0) position_ = offset;
  return {memory_.get() + gathered_, size};
}

void SectorFile::put(std::int32_t count) {
  gathered_ += static_cast<std::size_t>(count * sectorBytes_);
}

void SectorFile::flush() {
  const std::int64_t begin = position_;
  const std::size_t written = writeAt(file_, {memory_.get(), gathered_}, position_);
  position_ += static_cast<std::int64_t>(written);
  if (written != gathered_) throw writeFailure(position_ / sectorBytes_, errno);
  gathered_ = 0;
  startTheDisk(file_, begin, position_);
}

void SectorFile::finish() {
  flush();
  if (fsync(file_.get()) != 0) throw writeFailure(position_ / sectorBytes_, errno);
}

}  // namespace trackloom::engines::virtualrecorder
