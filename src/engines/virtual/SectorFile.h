#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "engines/ground/OpenFiles.h"
#include "ports/CDWriterXP.h"

namespace trackloom::engines::virtualrecorder {

/// The sectors of one kind, each at its block address; what is left out is a hole that reads as zeros. Sectors are
/// gathered into large writes. Throws EngineError with the block at which the system refused.
class SectorFile {
 public:
  SectorFile(FileDescriptor file, BlockKind kind);

  /// `sectors` are whole ones. Sectors that follow the last ones are gathered with them.
  void put(std::int32_t block, std::span<const std::byte> sectors);
  /// Brings everything to the medium.
  void finish();

 private:
  void flush();

  FileDescriptor file_;
  std::int64_t sectorBytes_;
  std::int64_t position_ = 0;
  std::vector<std::byte> gathered_;
};

}  // namespace trackloom::engines::virtualrecorder
