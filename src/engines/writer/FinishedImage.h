#pragma once

#include <cstdint>
#include <memory>

#include "engines/ground/Source.h"
#include "engines/writer/PieceSource.h"
#include "engines/writer/SourcesInUse.h"

namespace trackloom::engines::writer {

/// A finished image as the one track of a data disc: the bytes of its file, and zeros to the end of the last sector.
class FinishedImage final : public PieceSource {
 public:
  /// Opens the file. Throws EngineError where that fails, and where it changed since it was noted.
  FinishedImage(const std::shared_ptr<Source>& source, std::shared_ptr<SourcesInUse> inUse);

  /// Saturated.
  std::int32_t blocks() const;
  void read(std::span<std::byte> sectors) override;
  std::int16_t bufferPercent() override { return 100; }

 private:
  SourcesInUse::Use use_;
  SourceReading reading_;
  std::int64_t position_ = 0;
};

}  // namespace trackloom::engines::writer
