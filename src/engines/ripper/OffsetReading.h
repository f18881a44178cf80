#pragma once

#include <memory>

#include "engines/disc/ReadingDrive.h"

namespace trackloom::engines::ripper {

/// Reads what a drive gives too early, by so many samples, at its right place. What lies before or behind the sound of
/// the disc, where such a drive reads nothing, is silence.
class OffsetReading final : public DiscReading {
 public:
  OffsetReading(std::shared_ptr<DiscReading> drive, DiscContents contents, std::int32_t offset);

  std::vector<std::byte> read(std::int32_t sector, std::int32_t count, const TroubleWatch& watch,
                              const std::stop_token& stop) override;

 private:
  struct Run {
    std::int32_t begin = 0;
    std::int32_t end = 0;
  };

  Run runAround(std::int32_t sector) const;

  std::shared_ptr<DiscReading> drive_;
  DiscContents contents_;
  std::int32_t offset_;
};

}  // namespace trackloom::engines::ripper
