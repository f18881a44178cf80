#include "engines/ripper/LeadInPacks.h"

namespace trackloom::engines::ripper {

LeadInPacks& LeadInPacks::add(std::uint8_t type, const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += text + '\0';
  put(type, all);
  return *this;
}

LeadInPacks::Bytes LeadInPacks::packs(std::uint8_t tracks) {
  std::string sizes(36, '\0');
  sizes[1] = 1;
  sizes[2] = static_cast<char>(tracks);
  for (int type = 0; type < 16; ++type)
    sizes[static_cast<std::size_t>(4 + type)] = static_cast<char>(counts_[static_cast<std::size_t>(type)]);
  sizes[4 + 15] = 3;
  sizes[20] = static_cast<char>(sequence_ + 2);
  sizes[28] = 9;
  put(0x8F, sizes);
  return packs_;
}

LeadInPacks::Bytes LeadInPacks::reply(std::uint8_t tracks) {
  packs(tracks);
  const std::size_t length = packs_.size() + 2;
  Bytes bytes{static_cast<std::uint8_t>(length >> 8U), static_cast<std::uint8_t>(length), 0, 0};
  bytes.insert(bytes.end(), packs_.begin(), packs_.end());
  return bytes;
}

void LeadInPacks::put(std::uint8_t type, std::string content) {
  content.resize((content.size() + 11) / 12 * 12, '\0');
  std::uint8_t track = 0;
  for (std::size_t at = 0; at < content.size(); at += 12) {
    Bytes pack{type, type == 0x8F ? static_cast<std::uint8_t>(at / 12) : track, sequence_++, 0};
    for (std::size_t place = at; place < at + 12; ++place) {
      pack.push_back(static_cast<std::uint8_t>(content[place]));
      if (content[place] == '\0') ++track;
    }
    const std::uint16_t sum = checksum(pack);
    pack.push_back(static_cast<std::uint8_t>(sum >> 8U));
    pack.push_back(static_cast<std::uint8_t>(sum));
    packs_.insert(packs_.end(), pack.begin(), pack.end());
    ++counts_[type - 0x80U];
  }
}

std::uint16_t LeadInPacks::checksum(const Bytes& bytes) {
  std::uint16_t sum = 0;
  for (const std::uint8_t byte : bytes) {
    sum = static_cast<std::uint16_t>(sum ^ byte << 8U);
    for (int bit = 0; bit < 8; ++bit)
      sum = static_cast<std::uint16_t>((sum & 0x8000U) != 0 ? sum << 1U ^ 0x1021U : sum << 1U);
  }
  return static_cast<std::uint16_t>(~sum);
}

}  // namespace trackloom::engines::ripper
