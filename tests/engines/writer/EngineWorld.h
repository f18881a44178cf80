#pragma once

#include <catch2/catch.hpp>
#include <memory>

#include "contract/WriterWorld.h"
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

/// The real engine with one drive of a kind, which is made in a folder of its own.
template <class Drive>
class EngineWorld : public contract::WriterWorld {
 public:
  EngineWorld() { REQUIRE(real_->SelectDrive(0)); }

  bool can(contract::Ability) const override { return true; }
  CDWriterXP& real() override { return *real_; }
  CDWriterXP& scratch() override { return *scratch_; }
  fakes::WriterTranscript& heard() override { return heard_; }
  fakes::WriterTranscript& heardScratch() override { return scratchHeard_; }
  bool runUntil(const std::function<bool()>& done) override { return queue.runUntil(done); }
  void runPosted() override { queue.runPosted(); }
  void slowDown() override { drive.slowDown(); }
  void insert(std::int32_t blocks, bool rewritable = false) override { drive.insert(blocks, rewritable); }
  void takeDiscOut() override { drive.takeDiscOut(); }
  void refuse(bool select, bool eject) override { drive.refuse(select, eject); }
  void fail(const contract::Fault& fault) override { drive.fail(fault); }
  void heal() override { drive.heal(); }
  std::size_t tracksOnDisc() override { return drive.tracksOnDisc(); }
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
  bool write() {
    heard_.lines.clear();
    real_->StartWrite();
    return queue.runUntil([this] { return heard_.ended(); });
  }
  bool wroteWell() { return write() && heard_.lines.back() == "OnOperationComplete"; }
  const DiscWriters& writers() const { return writers_; }

  TempFolder folder;
  Drive drive{folder};
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;

 private:
  fakes::WriterTranscript heard_;
  fakes::WriterTranscript scratchHeard_;
  DiscWriters writers_{drive.recorders(), std::make_shared<audio::AudioFiles>(), queue, patience,
                       WriterSettings{150, folder.host("scratch")}};
  std::unique_ptr<CDWriterXP> real_ = writers_.create(heard_);
  std::unique_ptr<CDWriterXP> scratch_ = writers_.create(scratchHeard_);
};

}  // namespace trackloom::engines::writer
