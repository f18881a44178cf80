#include "engines/ripper/RipWorld.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "engines/encoder/LameEncoders.h"
#include "engines/ripper/RecorderDrive.h"
#include "engines/virtual/VirtualRecorders.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::ripper {

HandMadeDisc::HandMadeDisc(const fakes::TempFolder& folder) : folder_(folder) {}

std::string HandMadeDisc::place() {
  return "Virtual Recorder/tray/Disc 0001/";
}

void HandMadeDisc::layOut(const std::vector<contract::DiscPart>& tracks, const std::vector<int>& sessions) {
  std::filesystem::remove_all(folder_ / "Virtual Recorder/tray");
  std::string sound;
  std::string data;
  std::string ini = "[disc]\nmedium = CD-R\nstatus = closed\nblocks = 359849\n";
  for (int number = 1; number <= (sessions.empty() ? 1 : sessions.back()); ++number)
    ini += "[session " + std::to_string(number) + "]\nstatus = closed\n";
  for (std::size_t at = 0; at < tracks.size(); ++at) {
    const contract::DiscPart& track = tracks[at];
    ini += "[track " + std::to_string(at + 1) + "]\nsession = " + std::to_string(sessions.empty() ? 1 : sessions[at]) +
           "\nkind = " + (track.audio ? "audio" : "data") + "\nstart = " + std::to_string(track.start) +
           "\nlength = " + std::to_string(track.length) + "\npregap = 0\n";
    std::string& file = track.audio ? sound : data;
    const std::size_t bytes = track.audio ? 2352 : 2048;
    file.resize(static_cast<std::size_t>(track.start) * bytes, '\0');
    file += fakes::noise(static_cast<std::size_t>(track.length) * bytes, at + 7);
  }
  folder_.write(place() + "disc.ini", ini);
  if (!sound.empty()) folder_.write(place() + "disc.bin", sound);
  if (!data.empty()) folder_.write(place() + "disc.iso", data);
}

RipWorld::RipWorld(std::string ini, std::shared_ptr<Wakefulness> wakefulness) : lame(encoder::LameEncoders().create()) {
  virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
  folder.write("out/keep", "");
  if (!ini.empty()) folder.write("Engines.ini", ini);
  const auto recorder = virtualrecorder::findVirtualRecorders(HostPath(folder.path())).front();
  rippers = std::make_unique<DiscRippers>(ReadingDrives{std::make_shared<RecorderDrive>(recorder)}, queue, patience,
                                          RipperSettings{HostPath(folder.path()), 2, wakefulness});
  engine = rippers->create();
  engine->listen(&transcript);
}

RipWorld::~RipWorld() {
  // A hanging drive is let go of, so that no thread outlives the test for long.
  configure("");
}

bool RipWorld::can(contract::RipAbility) const {
  return true;
}

CDRipperX& RipWorld::ripper() {
  return *engine;
}

Mp3Stream& RipWorld::encoder() {
  return lame->Encoder();
}

fakes::RipperTranscript& RipWorld::heard() {
  return transcript;
}

bool RipWorld::runUntil(const std::function<bool()>& done) {
  return queue.runUntil(done);
}

void RipWorld::settle() {
  queue.runUntil([] { return false; }, std::chrono::seconds(1));
}

void RipWorld::insert(const std::vector<contract::DiscPart>& tracks) {
  HandMadeDisc(folder).layOut(tracks);
}

void RipWorld::takeDiscOut() {
  std::filesystem::remove_all(folder / HandMadeDisc::place());
}

void RipWorld::refuseDrive() {
  configure("[recorder]\nrefuseSelect = yes\n");
}

void RipWorld::spoil(std::int32_t sector) {
  configure("[faults]\nfailReadAt = " + std::to_string(sector) + "\n");
}

void RipWorld::makeHang(std::int32_t sector) {
  configure("[faults]\nhangReadAt = " + std::to_string(sector) + "\n");
}

std::string RipWorld::soundOf(std::int32_t sector, std::int32_t count) {
  return folder.read(HandMadeDisc::place() + "disc.bin")
      .substr(static_cast<std::size_t>(sector) * 2352, static_cast<std::size_t>(count) * 2352);
}

HostPath RipWorld::out(const std::string& name) {
  return folder.host("out/" + name);
}

void RipWorld::configure(const std::string& recorderIni) const {
  folder.write("Virtual Recorder/recorder.ini", recorderIni);
}

std::vector<std::string> RipWorld::made() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder / "out"))
    if (entry.path().filename() != "keep") names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace trackloom::engines::ripper
