#include "engines/virtual/SectorFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"

namespace trackloom::engines::virtualrecorder {

namespace {

constexpr std::int64_t gatherBytes = std::int64_t{1} << 20;

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
      memory_(gatherBytes / pageBytes + 1) {}

std::span<std::byte> SectorFile::room(std::int32_t block, std::int32_t count) {
  const std::int64_t place = block * sectorBytes_;
  const std::int64_t size = count * sectorBytes_;
  if (place != end_) flush(end_);
  if (end_ + size > position_ + gatherBytes) flush(pageOf(end_));
  if (position_ == end_) position_ = end_ = place;
  return {at(place), static_cast<std::size_t>(size)};
}

void SectorFile::put(std::int32_t count) {
  end_ += count * sectorBytes_;
}

void SectorFile::flush(std::int64_t end) {
  const std::int64_t begin = position_;
  const std::byte* const bytes = at(begin);
  const std::int64_t firstPage = std::min(pageOf(begin + pageBytes - 1), end);
  const std::int64_t behindPages = std::max(pageOf(end), firstPage);
  write(bytes, firstPage - begin, false);
  write(bytes + (firstPage - begin), behindPages - firstPage, canBeDirect_);
  write(bytes + (behindPages - begin), end - behindPages, false);
  startTheDisk(file_, begin, end);
  std::memmove(at(end), bytes + (end - begin), static_cast<std::size_t>(end_ - end));
}

void SectorFile::write(const std::byte* bytes, std::int64_t count, bool direct) {
  if (count == 0) return;
  setDirect(direct);
  const auto size = static_cast<std::size_t>(count);
  const std::size_t written = writeAt(file_, {bytes, size}, position_);
  position_ += static_cast<std::int64_t>(written);
  if (written == size) return;
  if (!direct || errno != EINVAL) throw writeFailure(position_ / sectorBytes_, errno);
  canBeDirect_ = false;
  write(bytes + written, count - static_cast<std::int64_t>(written), false);
}

void SectorFile::setDirect(bool direct) {
  if (direct == direct_) return;
  const int flags = fcntl(file_.get(), F_GETFL);
  if (flags != -1 && fcntl(file_.get(), F_SETFL, direct ? flags | O_DIRECT : flags & ~O_DIRECT) == 0)
    direct_ = direct;
  else
    canBeDirect_ = false;
}

void SectorFile::finish() {
  flush(end_);
  if (fsync(file_.get()) != 0) throw writeFailure(position_ / sectorBytes_, errno);
}

}  // namespace trackloom::engines::virtualrecorder
