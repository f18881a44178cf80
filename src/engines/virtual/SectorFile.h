#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "engines/ground/OpenFiles.h"
#include "ports/CDWriterXP.h"

namespace trackloom::engines::virtualrecorder {

/// The sectors of one kind, each at its block address; what is left out is a hole that reads as zeros. Sectors are
/// gathered into large writes. Throws EngineError with the block at which the system refused.
class SectorFile {
 public:
  SectorFile(FileDescriptor file, BlockKind kind);

  /// Room for so many sectors from this block on, valid until the next call. Those that follow the last ones are
  /// gathered with them.
  std::span<std::byte> room(std::int32_t block, std::int32_t count);
  /// The first so many sectors of that room are filled.
  void put(std::int32_t count);
  /// Brings everything to the medium.
  void finish();

 private:
  void flush();

  FileDescriptor file_;
  std::int64_t sectorBytes_;
  std::int64_t position_ = 0;
  std::unique_ptr<std::byte[]> memory_;
  std::size_t gathered_ = 0;
};

}  // namespace trackloom::engines::virtualrecorder
