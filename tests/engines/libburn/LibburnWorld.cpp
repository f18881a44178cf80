#include "engines/libburn/LibburnWorld.h"

#include <catch2/catch.hpp>

namespace trackloom::engines::libburn {

LibburnWorld::LibburnWorld() = default;

LibburnWorld::~LibburnWorld() = default;

bool LibburnWorld::can(contract::Ability ability) const {
  return ability != contract::Ability::Faults;
}

bool LibburnWorld::cachesAllFirst() const {
  return true;
}

void LibburnWorld::queueTracks(const std::vector<std::int32_t>& blocks) {
  real().ClearAudioQueue();
  real().SetDiscMode(AudioBlocks);
  for (std::size_t i = 0; i < blocks.size(); ++i)
    REQUIRE(real().AddAudioTrack(audioFile(nameOf(i), blocks[i]), static_cast<std::int16_t>(i + 1)));
}

std::string LibburnWorld::nameOf(std::size_t index) {
  return std::string(1, static_cast<char>('a' + index % 26)) + std::to_string(index);
}

void LibburnWorld::close(bool session, bool disc) {
  real().SetCloseSession(session);
  real().SetCloseDisc(disc);
}

std::string LibburnWorld::sectors(std::int32_t block, std::int32_t count) const {
  return folder.read("drives/sr0/disc/sectors")
      .substr((static_cast<std::size_t>(block) + 150) * 2352, static_cast<std::size_t>(count) * 2352);
}

std::string LibburnWorld::lastLine() {
  return heard().lines.empty() ? "" : heard().lines.back();
}

std::string LibburnWorld::words() {
  return real().LastDeviceErrorText();
}

std::string failedWith(std::int32_t number) {
  return "OnWriteError 3 " + std::to_string(number);
}

}  // namespace trackloom::engines::libburn
