#pragma once

#include <catch2/catch.hpp>
#include <memory>
#include <string>
#include <vector>

#include "contract/RipperWorld.h"
#include "engines/encoder/LameEncoders.h"
#include "engines/ripper/DiscRippers.h"
#include "engines/ripper/RecorderDrive.h"
#include "engines/virtual/VirtualRecorders.h"
#include "fakes/FakeEventQueue.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::ripper {

/// The disc in the tray of a virtual recorder, laid out by hand.
class HandMadeDisc {
 public:
  explicit HandMadeDisc(const fakes::TempFolder& folder) : folder_(folder) {}

  static std::string place() { return "Virtual Recorder/tray/Disc 0001/"; }
  /// Each track in the session of its place in `sessions`; where that has none, in the first.
  void layOut(const std::vector<contract::DiscPart>& tracks, const std::vector<int>& sessions = {}) {
    std::filesystem::remove_all(folder_ / "Virtual Recorder/tray");
    std::string sound;
    std::string data;
    std::string ini = "[disc]\nmedium = CD-R\nstatus = closed\nblocks = 359849\n";
    for (int number = 1; number <= (sessions.empty() ? 1 : sessions.back()); ++number)
      ini += "[session " + std::to_string(number) + "]\nstatus = closed\n";
    for (std::size_t at = 0; at < tracks.size(); ++at) {
      const contract::DiscPart& track = tracks[at];
      ini += "[track " + std::to_string(at + 1) +
             "]\nsession = " + std::to_string(sessions.empty() ? 1 : sessions[at]) +
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

 private:
  const fakes::TempFolder& folder_;
};

/// The real engines on a virtual recorder.
class RipWorld : public contract::RipperWorld {
 public:
  explicit RipWorld(std::string ini = "", std::shared_ptr<Wakefulness> wakefulness = nullptr) {
    virtualrecorder::createVirtualRecorder(folder.host("Virtual Recorder"));
    folder.write("out/keep", "");
    if (!ini.empty()) folder.write("Engines.ini", ini);
    const auto recorder = virtualrecorder::findVirtualRecorders(HostPath(folder.path())).front();
    rippers = std::make_unique<DiscRippers>(ReadingDrives{std::make_shared<RecorderDrive>(recorder)}, queue, patience,
                                            RipperSettings{HostPath(folder.path()), 2, wakefulness});
    engine = rippers->create();
    engine->listen(&transcript);
  }
  ~RipWorld() override {
    // A hanging drive is let go of, so that no thread outlives the test for long.
    configure("");
  }

  bool can(contract::RipAbility) const override { return true; }
  CDRipperX& ripper() override { return *engine; }
  Mp3Stream& encoder() override { return lame->Encoder(); }
  fakes::RipperTranscript& heard() override { return transcript; }
  bool runUntil(const std::function<bool()>& done) override { return queue.runUntil(done); }
  void settle() override {
    queue.runUntil([] { return false; }, std::chrono::seconds(1));
  }

  void insert(const std::vector<contract::DiscPart>& tracks) override { HandMadeDisc(folder).layOut(tracks); }
  void takeDiscOut() override { std::filesystem::remove_all(folder / HandMadeDisc::place()); }
  void refuseDrive() override { configure("[recorder]\nrefuseSelect = yes\n"); }
  void spoil(std::int32_t sector) override { configure("[faults]\nfailReadAt = " + std::to_string(sector) + "\n"); }
  void makeHang(std::int32_t sector) override { configure("[faults]\nhangReadAt = " + std::to_string(sector) + "\n"); }
  std::string soundOf(std::int32_t sector, std::int32_t count) override {
    return folder.read(HandMadeDisc::place() + "disc.bin")
        .substr(static_cast<std::size_t>(sector) * 2352, static_cast<std::size_t>(count) * 2352);
  }
  HostPath out(const std::string& name) override { return folder.host("out/" + name); }

  void configure(const std::string& recorderIni) const { folder.write("Virtual Recorder/recorder.ini", recorderIni); }
  std::vector<std::string> made() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "out"))
      if (entry.path().filename() != "keep") names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  fakes::TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::RipperTranscript transcript;
  std::unique_ptr<MP3EncoderX> lame = encoder::LameEncoders().create();
  std::unique_ptr<DiscRippers> rippers;
  std::unique_ptr<CDRipperX> engine;
};

}  // namespace trackloom::engines::ripper
