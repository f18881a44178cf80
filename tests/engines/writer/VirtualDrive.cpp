#include "engines/writer/VirtualDrive.h"

#include <cstdio>
#include <map>

#include "fakes/TestFiles.h"

namespace trackloom::engines::writer {

VirtualDrive::VirtualDrive(const fakes::TempFolder& folder) : folder_(folder) {
  virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
}

RecorderList VirtualDrive::recorders() const {
  return virtualrecorder::findVirtualRecorders(HostPath(folder_.path()));
}

void VirtualDrive::slowDown() const {
  configure("[recorder]\nrealTimePacing = yes\nmaximumSpeed = 1\n");
}

void VirtualDrive::insert(std::int32_t blocks, bool rewritable) const {
  takeDiscOut();
  folder_.file("Virtual Recorder/tray/Inserted/disc.ini", std::string("[disc]\nmedium = ") +
                                                              (rewritable ? "CD-RW" : "CD-R") +
                                                              "\nstatus = blank\nblocks = " + std::to_string(blocks));
}

void VirtualDrive::takeDiscOut() const {
  configure("[recorder]\nautomaticFeed = no\n");
  for (const auto& entry : std::filesystem::directory_iterator(tray())) std::filesystem::remove_all(entry.path());
}

void VirtualDrive::refuse(bool select, bool eject) const {
  const auto word = [](bool refused) { return std::string(refused ? "yes" : "no"); };
  configure("[recorder]\nrefuseSelect = " + word(select) + "\nrefuseEject = " + word(eject) + "\n");
}

void VirtualDrive::fail(const contract::Fault& fault) const {
  using Place = contract::Fault::Place;
  static const std::map<Place, std::string> keys{{Place::Block, "failWriteAt = "},
                                                 {Place::Cache, "failCachingAt = "},
                                                 {Place::TrackClosing, "failClosing = track;"},
                                                 {Place::SessionClosing, "failClosing = session;"},
                                                 {Place::DiscClosing, "failClosing = disc;"},
                                                 {Place::Erase, "failErasing = yes;"},
                                                 {Place::Eject, "failEjecting = yes;"}};
  const std::string& key = keys.at(fault.place);
  const std::string line = key.ends_with(';') ? key.substr(0, key.size() - 1) : key + std::to_string(fault.block);
  char number[16];
  std::snprintf(number, sizeof number, "%X/%02X/%02X", fault.number >> 16, fault.number >> 8 & 0xFF,
                fault.number & 0xFF);
  configure("[faults]\n" + line + "\nfailCode = " + std::to_string(fault.code) + "\nfailNumber = " + number +
            "\nfailText = " + fault.words + "\n");
}

void VirtualDrive::heal() const {
  configure("[recorder]\nautomaticFeed = no\n");
}

std::size_t VirtualDrive::tracksOnDisc() const {
  const std::string ini = fakes::contentOf(disc() / "disc.ini");
  std::size_t tracks = 0;
  while (ini.find("[track " + std::to_string(tracks + 1) + "]") != std::string::npos) ++tracks;
  return tracks;
}

void VirtualDrive::configure(const std::string& text) const {
  folder_.file("Virtual Recorder/recorder.ini", text);
}

std::filesystem::path VirtualDrive::tray() const {
  return folder_ / "Virtual Recorder/tray";
}

std::filesystem::path VirtualDrive::disc() const {
  return std::filesystem::directory_iterator(tray())->path();
}

}  // namespace trackloom::engines::writer
