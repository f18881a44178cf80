#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "contract/WriterWorld.h"
#include "engines/virtual/VirtualRecorders.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::writer {

/// A virtual recorder in the hands of a test. Another kind of recorder that answers the same goes through the contract
/// as the drive of an EngineWorld.
class VirtualDrive {
 public:
  explicit VirtualDrive(const fakes::TempFolder& folder) : folder_(folder) {
    virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
  }

  RecorderList recorders() const { return virtualrecorder::findVirtualRecorders(HostPath(folder_.path())); }
  void slowDown() const { configure("[recorder]\nrealTimePacing = yes\nmaximumSpeed = 1\n"); }
  void insert(std::int32_t blocks, bool rewritable) const {
    takeDiscOut();
    folder_.file("Virtual Recorder/tray/Inserted/disc.ini", std::string("[disc]\nmedium = ") +
                                                                (rewritable ? "CD-RW" : "CD-R") +
                                                                "\nstatus = blank\nblocks = " + std::to_string(blocks));
  }
  void takeDiscOut() const {
    configure("[recorder]\nautomaticFeed = no\n");
    for (const auto& entry : std::filesystem::directory_iterator(tray())) std::filesystem::remove_all(entry.path());
  }
  void refuse(bool select, bool eject) const {
    const auto word = [](bool refused) { return std::string(refused ? "yes" : "no"); };
    configure("[recorder]\nrefuseSelect = " + word(select) + "\nrefuseEject = " + word(eject) + "\n");
  }
  void fail(const contract::Fault& fault) const {
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
  void heal() const { configure("[recorder]\nautomaticFeed = no\n"); }
  std::size_t tracksOnDisc() const {
    const std::string ini = fakes::contentOf(disc() / "disc.ini");
    std::size_t tracks = 0;
    while (ini.find("[track " + std::to_string(tracks + 1) + "]") != std::string::npos) ++tracks;
    return tracks;
  }

  void configure(const std::string& text) const { folder_.file("Virtual Recorder/recorder.ini", text); }
  std::filesystem::path tray() const { return folder_ / "Virtual Recorder/tray"; }
  /// The only disc in the tray.
  std::filesystem::path disc() const { return std::filesystem::directory_iterator(tray())->path(); }

 private:
  const fakes::TempFolder& folder_;
};

}  // namespace trackloom::engines::writer
