#pragma once

#include <filesystem>
#include <string>

#include "engines/writer/EngineWorld.h"
#include "engines/writer/VirtualDrive.h"

namespace trackloom::engines::writer {

/// The real engine with a virtual recorder.
class VirtualWorld : public EngineWorld<VirtualDrive> {
 public:
  VirtualWorld();
  ~VirtualWorld() override;

  void recorderIni(const std::string& text) const;
  std::filesystem::path tray() const;
  std::filesystem::path disc() const;
};

}  // namespace trackloom::engines::writer
