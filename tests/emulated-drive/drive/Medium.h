#pragma once

#include <filesystem>

#include "Disc.h"
#include "Sectors.h"

namespace emulated {

/// The disc in a drive, or the copy of it on which a test writes, of which nothing is recorded.
class Medium {
 public:
  explicit Medium(const std::filesystem::path& folder)
      : disc(Disc::load(folder / "disc")), sectors(folder), folder_(folder) {}

  void rehearse() { recorded_ = false; }
  bool recorded() const { return recorded_; }
  void save() const {
    if (recorded_) disc.save(folder_ / "disc");
  }
  void write(std::int32_t block, View content, const Mark& mark) const {
    if (recorded_) sectors.write(block, content, mark);
  }
  void writeSilence(std::int32_t block, std::int32_t count, const Mark& mark) const {
    if (recorded_) sectors.writeSilence(block, count, mark);
  }

  Disc disc;
  Sectors sectors;

 private:
  std::filesystem::path folder_;
  bool recorded_ = true;
};

}  // namespace emulated
