#pragma once

#include <fcntl.h>

#include <filesystem>

#include "Disc.h"
#include "HeldPath.h"
#include "Sectors.h"

namespace emulated {

/// The disc in a drive, or the copy of it on which a test writes, of which nothing is recorded.
class Medium {
 public:
  explicit Medium(const std::filesystem::path& folder)
      : disc(Disc::load(folder / "disc")), sectors(folder), folder_(folder), seen_(folder / "disc", O_RDONLY) {}

  void rehearse() { recorded_ = false; }
  bool recorded() const { return recorded_; }
  /// Nobody else has written the disc since.
  bool fresh() const { return HeldPath(folder_ / "disc", O_RDONLY).isSame(seen_); }
  void save() {
    if (!recorded_) return;
    disc.save(folder_ / "disc");
    seen_ = HeldPath(folder_ / "disc", O_RDONLY);
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
  /// A disc's description is replaced whole, by another file.
  HeldPath seen_;
  bool recorded_ = true;
};

}  // namespace emulated
