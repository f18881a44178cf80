#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

VirtualWorld::VirtualWorld() = default;

VirtualWorld::~VirtualWorld() = default;

void VirtualWorld::recorderIni(const std::string& text) const {
  drive.configure(text);
}

std::filesystem::path VirtualWorld::tray() const {
  return drive.tray();
}

std::filesystem::path VirtualWorld::disc() const {
  return drive.disc();
}

}  // namespace trackloom::engines::writer
