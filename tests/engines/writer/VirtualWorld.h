#pragma once

#include <catch2/catch.hpp>

#include "contract/WriterWorld.h"
#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "fakes/FakeEventQueue.h"
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
                                             std::make_shared<audio::AudioFiles>(), queue,
                                             WriterSettings{150, folder.host("scratch")});
    real_ = writers_->create(heard_);
    scratch_ = writers_->create(scratchHeard_);
    REQUIRE(real_->SelectDrive(0));
  }

  CDWriterXP& real() override { return *real_; }
  CDWriterXP& scratch() override { return *scratch_; }
  fakes::WriterTranscript& heard() override { return heard_; }
  bool runUntil(const std::function<bool()>& done) override { return queue.runUntil(done); }
  void runPosted() override { queue.runPosted(); }
  void slowDown() override { recorderIni("[recorder]\nrealTimePacing = yes\nmaximumSpeed = 1\n"); }
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
  /// The only disc in the tray.
  std::filesystem::path disc() const {
    return std::filesystem::directory_iterator(std::filesystem::path(folder.path()) / "Virtual Recorder" / "tray")
        ->path();
  }
  bool write() {
    heard_.lines.clear();
    real_->StartWrite();
    return queue.runUntil([this] { return heard_.ended(); });
  }
  bool wroteWell() { return write() && heard_.lines.back() == "OnOperationComplete"; }

  TempFolder folder;
  fakes::FakeEventQueue queue;

 private:
  fakes::WriterTranscript heard_;
  fakes::WriterTranscript scratchHeard_;
  std::unique_ptr<DiscWriters> writers_;
  std::unique_ptr<CDWriterXP> real_;
  std::unique_ptr<CDWriterXP> scratch_;
};

}  // namespace trackloom::engines::writer
