#pragma once

#include <catch2/catch.hpp>

#include "contract/WriterWorld.h"
#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "fakes/FakeEventQueue.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::writer {

using fakes::contentOf;
using fakes::noise;
using fakes::TempFolder;
using fakes::wav;

/// The real engine with a virtual recorder in a folder of its own.
class VirtualWorld : public contract::WriterWorld {
 public:
  VirtualWorld() {
    const HostPath recorder = folder.host("Virtual Recorder");
    virtualrecorder::createVirtualRecorder(recorder);
    writers_ = std::make_unique<DiscWriters>(virtualrecorder::findVirtualRecorders(HostPath(folder.path())),
                                             std::make_shared<audio::AudioFiles>(), queue, patience,
                                             WriterSettings{150, folder.host("scratch")});
    real_ = writers_->create(heard_);
    scratch_ = writers_->create(scratchHeard_);
    REQUIRE(real_->SelectDrive(0));
  }

  bool can(contract::Ability) const override { return true; }
  CDWriterXP& real() override { return *real_; }
  CDWriterXP& scratch() override { return *scratch_; }
  fakes::WriterTranscript& heard() override { return heard_; }
  fakes::WriterTranscript& heardScratch() override { return scratchHeard_; }
  bool runUntil(const std::function<bool()>& done) override { return queue.runUntil(done); }
  void runPosted() override { queue.runPosted(); }
  void slowDown() override { recorderIni("[recorder]\nrealTimePacing = yes\nmaximumSpeed = 1\n"); }
  void insert(std::int32_t blocks, bool rewritable = false) override {
    takeDiscOut();
    folder.file("Virtual Recorder/tray/Inserted/disc.ini", std::string("[disc]\nmedium = ") +
                                                               (rewritable ? "CD-RW" : "CD-R") +
                                                               "\nstatus = blank\nblocks = " + std::to_string(blocks));
  }
  void takeDiscOut() override {
    recorderIni("[recorder]\nautomaticFeed = no\n");
    for (const auto& entry : std::filesystem::directory_iterator(tray())) std::filesystem::remove_all(entry.path());
  }
  void refuse(bool select, bool eject) override {
    const auto word = [](bool refused) { return std::string(refused ? "yes" : "no"); };
    recorderIni("[recorder]\nrefuseSelect = " + word(select) + "\nrefuseEject = " + word(eject) + "\n");
  }
  void failAt(std::int32_t block) override { recorderIni("[faults]\nfailWriteAt = " + std::to_string(block) + "\n"); }
  std::size_t tracksOnDisc() override {
    const std::string ini = contentOf(disc() / "disc.ini");
    std::size_t tracks = 0;
    while (ini.find("[track " + std::to_string(tracks + 1) + "]") != std::string::npos) ++tracks;
    return tracks;
  }
  void vanish(const HostPath& file) override { std::filesystem::remove(file.text); }
  HostPath place(const std::string& name) override { return folder.host(name); }
  HostPath audioFile(const std::string& name, std::int32_t blocks) override {
    return folder.file(name + ".wav", wav(audioOf(name, blocks)));
  }
  HostPath plainFile(const std::string& name, std::int64_t bytes) override {
    return folder.file(name, noise(static_cast<std::size_t>(bytes), 99));
  }

  /// The samples in the audio file of that name.
  static std::string audioOf(const std::string& name, std::int32_t blocks) {
    return noise(static_cast<std::size_t>(blocks) * 2352, static_cast<unsigned char>(name.front()));
  }
  void recorderIni(const std::string& text) const { folder.file("Virtual Recorder/recorder.ini", text); }
  std::filesystem::path tray() const { return folder / "Virtual Recorder/tray"; }
  /// The only disc in the tray.
  std::filesystem::path disc() const { return std::filesystem::directory_iterator(tray())->path(); }
  bool write() {
    heard_.lines.clear();
    real_->StartWrite();
    return queue.runUntil([this] { return heard_.ended(); });
  }
  const DiscWriters& writers() const { return *writers_; }
  bool wroteWell() { return write() && heard_.lines.back() == "OnOperationComplete"; }

  TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;

 private:
  fakes::WriterTranscript heard_;
  fakes::WriterTranscript scratchHeard_;
  std::unique_ptr<DiscWriters> writers_;
  std::unique_ptr<CDWriterXP> real_;
  std::unique_ptr<CDWriterXP> scratch_;
};

}  // namespace trackloom::engines::writer
