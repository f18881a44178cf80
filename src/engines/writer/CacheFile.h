#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "engines/writer/PieceSource.h"
#include "runtime/FileDescriptor.h"
#include "runtime/Paths.h"

namespace trackloom::engines::writer {

/// The cache for one track at a time: a file without a name, which vanishes with this object however the process ends.
class CacheFile final : public PieceSource {
 public:
  /// Takes the room for `most` bytes from the disk. Throws EngineError when it has none, or `folder` takes no file.
  CacheFile(const HostPath& folder, std::int64_t most);

  /// Takes the next `bytes` of `source` in place of what it held, no more than there is room for; `progress` hears of
  /// the bytes cached so far. Throws EngineError, and what the source throws.
  void fill(SectorSource& source, std::int64_t bytes, const std::function<void(std::int64_t)>& progress);

  void read(std::span<std::byte> sectors) override;
  std::int16_t bufferPercent() override { return 100; }

 private:
  FileDescriptor file_;
  std::int64_t position_ = 0;
};

}  // namespace trackloom::engines::writer
