#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <tuple>

#include "Disc.h"
#include "Sectors.h"

namespace emulated {

/// The disc in a drive, or the copy of it on which a test writes, of which nothing is recorded.
class Medium {
 public:
  explicit Medium(const std::filesystem::path& folder)
      : disc(Disc::load(folder / "disc")), sectors(folder), folder_(folder), seen_(stamp()) {}

  void rehearse() { recorded_ = false; }
  bool recorded() const { return recorded_; }
  /// Nobody else has written the disc since.
  bool fresh() const { return stamp() == seen_; }
  void save() {
    if (!recorded_) return;
    disc.save(folder_ / "disc");
    seen_ = stamp();
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
  /// Of the disc's description: which file it is, when it was last written, and how many bytes it has.
  using Stamp = std::tuple<ino_t, std::int64_t, std::int64_t, off_t>;
  Stamp stamp() const {
    struct stat now {};
    ::stat((folder_ / "disc").c_str(), &now);
    return {now.st_ino, now.st_mtim.tv_sec, now.st_mtim.tv_nsec, now.st_size};
  }

  std::filesystem::path folder_;
  Stamp seen_;
  bool recorded_ = true;
};

}  // namespace emulated
