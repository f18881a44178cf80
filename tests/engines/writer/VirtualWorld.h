#pragma once

#include "engines/writer/EngineWorld.h"
#include "engines/writer/VirtualDrive.h"

namespace trackloom::engines::writer {

/// The real engine with a virtual recorder.
class VirtualWorld : public EngineWorld<VirtualDrive> {
 public:
  void recorderIni(const std::string& text) const { drive.configure(text); }
  std::filesystem::path tray() const { return drive.tray(); }
  std::filesystem::path disc() const { return drive.disc(); }
};

}  // namespace trackloom::engines::writer
