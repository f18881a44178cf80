#pragma once

#include <filesystem>
#include <string>

#include "contract/WriterWorld.h"
#include "engines/virtual/VirtualRecorders.h"
#include "fakes/TempFolder.h"

namespace trackloom::engines::writer {

/// A virtual recorder in the hands of a test. Another kind of recorder that answers the same goes through the contract
/// as the drive of an EngineWorld.
class VirtualDrive {
 public:
  explicit VirtualDrive(const fakes::TempFolder& folder);

  RecorderList recorders() const;
  void slowDown() const;
  void insert(std::int32_t blocks, bool rewritable) const;
  void takeDiscOut() const;
  void refuse(bool select, bool eject) const;
  void fail(const contract::Fault& fault) const;
  void heal() const;
  std::size_t tracksOnDisc() const;

  void configure(const std::string& text) const;
  std::filesystem::path tray() const;
  /// The only disc in the tray.
  std::filesystem::path disc() const;

 private:
  const fakes::TempFolder& folder_;
};

}  // namespace trackloom::engines::writer
