#pragma once

#include <algorithm>
#include <string>

#include "engines/libburn/EmulatedDrive.h"
#include "engines/writer/EngineWorld.h"

namespace trackloom::engines::libburn {

/// The real engine with a recorder of this machine. Drives fail as they like, and not in the phases of the contract.
class LibburnWorld : public writer::EngineWorld<EmulatedDrive> {
 public:
  bool can(contract::Ability ability) const override { return ability != contract::Ability::Faults; }

  bool cachesAllFirst() const override { return true; }

  /// Tracks in this order, whose sound is that of the letters from "a" on.
  void queueTracks(const std::vector<std::int32_t>& blocks) {
    real().ClearAudioQueue();
    real().SetDiscMode(AudioBlocks);
    for (std::size_t i = 0; i < blocks.size(); ++i)
      REQUIRE(real().AddAudioTrack(audioFile(nameOf(i), blocks[i]), static_cast<std::int16_t>(i + 1)));
  }
  static std::string nameOf(std::size_t index) {
    return std::string(1, static_cast<char>('a' + index % 26)) + std::to_string(index);
  }
  void close(bool session, bool disc) {
    real().SetCloseSession(session);
    real().SetCloseDisc(disc);
  }
  /// The sectors as they lie on the disc.
  std::string sectors(std::int32_t block, std::int32_t count) const {
    return folder.read("drives/sr0/disc/sectors")
        .substr((static_cast<std::size_t>(block) + 150) * 2352, static_cast<std::size_t>(count) * 2352);
  }
  std::string lastLine() { return heard().lines.empty() ? "" : heard().lines.back(); }
  std::string words() { return real().LastDeviceErrorText(); }
};

/// `OnWriteError` with the number that a drive's sense is told as.
inline std::string failedWith(std::int32_t number) {
  return "OnWriteError 3 " + std::to_string(number);
}

}  // namespace trackloom::engines::libburn
