#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "engines/writer/PieceSource.h"
#include "runtime/FileDescriptor.h"
#include "runtime/Paths.h"

namespace trackloom::engines::writer {

/// The cache for tracks, which are read in the order in which they went in: a file without a name, which vanishes with
/// this object however the process ends.
class CacheFile final : public PieceSource {
 public:
  /// Takes the room for `most` bytes from the disk. Throws EngineError when it has none, or `folder` takes no file.
  CacheFile(const HostPath& folder, std::int64_t most);

  /// Holds nothing any more.
  void empty() { filled_ = position_ = 0; }
  /// Takes the next `bytes` of `source` behind what it holds, no more than there is room for; `progress` hears how many
  /// of them are cached so far. Throws EngineError, and what the source throws.
  void fill(SectorSource& source, std::int64_t bytes, const std::function<void(std::int64_t)>& progress);

  void read(std::span<std::byte> sectors) override;
  std::int16_t bufferPercent() override { return 100; }

 private:
  FileDescriptor file_;
  std::int64_t filled_ = 0;
  std::int64_t position_ = 0;
};

}  // namespace trackloom::engines::writer
