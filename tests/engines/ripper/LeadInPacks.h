#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace trackloom::engines::ripper {

/// The packs of a lead-in's only block (MMC-3, annex J), in ISO 8859-1 and English.
class LeadInPacks {
 public:
  using Bytes = std::vector<std::uint8_t>;

  /// The texts of the disc and of its tracks, in their order.
  LeadInPacks& add(std::uint8_t type, const std::vector<std::string>& texts);
  /// With the block's own, of a disc of so many tracks.
  Bytes packs(std::uint8_t tracks);
  /// The reply of a drive.
  Bytes reply(std::uint8_t tracks);

 private:
  void put(std::uint8_t type, std::string content);
  static std::uint16_t checksum(const Bytes& bytes);

  Bytes packs_;
  std::uint8_t sequence_ = 0;
  std::array<std::uint8_t, 16> counts_{};
};

}  // namespace trackloom::engines::ripper
