#pragma once

#include <string>
#include <vector>

#include "engines/libburn/EmulatedDrive.h"
#include "engines/writer/EngineWorld.h"

namespace trackloom::engines::libburn {

/// The real engine with a recorder of this machine. Drives fail as they like, and not in the phases of the contract.
class LibburnWorld : public writer::EngineWorld<EmulatedDrive> {
 public:
  LibburnWorld();
  ~LibburnWorld() override;

  bool can(contract::Ability ability) const override;

  bool cachesAllFirst() const override;

  /// Tracks in this order, whose sound is that of the letters from "a" on.
  void queueTracks(const std::vector<std::int32_t>& blocks);
  static std::string nameOf(std::size_t index);
  void close(bool session, bool disc);
  /// The sectors as they lie on the disc.
  std::string sectors(std::int32_t block, std::int32_t count) const;
  std::string lastLine();
  std::string words();
};

/// `OnWriteError` with the number that a drive's sense is told as.
std::string failedWith(std::int32_t number);

}  // namespace trackloom::engines::libburn
