#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>

#include "Bytes.h"
#include "Disc.h"

namespace emulated {

inline constexpr std::size_t rawBytes = 2352;
inline constexpr std::size_t userBytes = 2048;

/// What the sub-channel of a sector says of it.
struct Mark {
  /// 0: nothing was ever recorded here.
  std::uint8_t session = 0;
  std::uint8_t track = 0;
  std::uint8_t index = 0;
  /// Control bits in the high half (IEC 60908, 17.5.1), kind in the low one.
  std::uint8_t control = 0;

  Kind kind() const { return static_cast<Kind>(control & 0x0FU); }
};

using RawSector = std::array<std::uint8_t, rawBytes>;

/// The sectors of a disc in two files beside its description: `sectors` has 2352 bytes of each from block -150 on,
/// `marks` the four bytes of its Mark. A block that was never recorded is a hole. Data sectors carry sync and header;
/// their error correction is left empty.
class Sectors {
 public:
  explicit Sectors(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// `content` is 2352 bytes of audio or 2048 of data for each sector.
  void write(std::int32_t block, View content, const Mark& mark) const;
  void writeSilence(std::int32_t block, std::int32_t count, const Mark& mark) const;
  RawSector read(std::int32_t block) const;
  Mark mark(std::int32_t block) const;
  void erase() const;
  /// The packs of the lead-in, 18 bytes each, which are recorded over and over.
  void writeText(View packs) const;
  /// One turn of them.
  Bytes text() const;

 private:
  std::filesystem::path folder_;
};

/// The bytes of one sector as the host sends them.
constexpr std::size_t bytesOf(Kind kind) {
  return kind == Kind::Audio ? rawBytes : userBytes;
}

}  // namespace emulated
