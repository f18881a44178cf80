#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "engines/ground/OpenFiles.h"
#include "ports/CDWriterXP.h"

namespace trackloom::engines::virtualrecorder {

/// The sectors of one kind, each at its block address; what is left out is a hole that reads as zeros. Sectors are
/// gathered into large writes, which go to the disk past the system's cache where the file system lets them: a quarter
/// of the processors' time would go into copying a disc there, and everything else would be pushed out of it. Throws
/// EngineError with the block at which the system refused.
class SectorFile {
 public:
  SectorFile(FileDescriptor file, BlockKind kind);

  /// Room for so many sectors, far less than a mebibyte, from this block on, valid until the next call. Those that
  /// follow the last ones are gathered with them.
  std::span<std::byte> room(std::int32_t block, std::int32_t count);
  /// The first so many sectors of that room are filled.
  void put(std::int32_t count);
  /// Brings everything to the medium.
  void finish();

 private:
  /// In pages goes what goes past the cache, on the disk and in memory.
  static constexpr std::int64_t pageBytes = 4096;
  struct Page {
    alignas(pageBytes) std::array<std::byte, pageBytes> bytes;
  };

  static std::int64_t pageOf(std::int64_t place) { return place / pageBytes * pageBytes; }
  /// Where in memory what belongs to this place of the file is gathered.
  std::byte* at(std::int64_t place) {
    return reinterpret_cast<std::byte*>(memory_.data()) + (place - pageOf(position_));
  }
  /// Writes what is gathered up to this place, and keeps the rest.
  void flush(std::int64_t end);
  void write(const std::byte* bytes, std::int64_t count, bool direct);
  void setDirect(bool direct);

  FileDescriptor file_;
  std::int64_t sectorBytes_;
  std::vector<Page> memory_;
  // What is gathered lies between these two places of the file.
  std::int64_t position_ = 0;
  std::int64_t end_ = 0;
  bool direct_ = false;
  bool canBeDirect_ = true;
};

}  // namespace trackloom::engines::virtualrecorder
