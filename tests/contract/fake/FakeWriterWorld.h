#pragma once

#include "contract/WriterWorld.h"
#include "fakes/FakeWriter.h"
#include "fakes/TempFolder.h"

namespace trackloom::fakes {

/// The engine in memory as the contract sees it: it fails in writing alone, and its tests never ask for two operations.
class FakeWriterWorld final : public contract::WriterWorld {
 public:
  FakeWriterWorld() { real_.SelectDrive(0); }

  bool can(contract::Ability) const override { return false; }
  CDWriterXP& real() override { return real_; }
  CDWriterXP& scratch() override { return scratch_; }
  WriterTranscript& heard() override { return heard_; }
  WriterTranscript& heardScratch() override { return scratchHeard_; }

  bool runUntil(const std::function<bool()>& done) override {
    while (!done() && real_.busy()) real_.step();
    return done();
  }
  void runPosted() override { real_.finish(); }
  void slowDown() override {}

  void insert(std::int32_t blocks, bool rewritable = false) override {
    stage_.disc = FakeDisc{.rewritable = rewritable, .freeAudio = blocks, .freeData = blocks};
  }
  void takeDiscOut() override { stage_.disc.reset(); }
  void refuse(bool select, bool eject) override {
    stage_.drives[0].refuses = select;
    stage_.ejectFails = eject;
  }
  void fail(const contract::Fault& fault) override {
    stage_.fault = FakeFault{.block = fault.block, .code = fault.code, .number = fault.number, .words = fault.words};
  }
  void heal() override { stage_.fault.reset(); }
  std::size_t tracksOnDisc() override { return stage_.disc ? stage_.disc->tracks : 0; }

  HostPath audioFile(const std::string& name, std::int32_t blocks) override {
    const HostPath path = place(name + ".wav");
    stage_.audio[path.text] = blocks;
    return path;
  }
  HostPath plainFile(const std::string& name, std::int64_t bytes) override {
    const HostPath path = place(name);
    stage_.data[path.text] = static_cast<std::int32_t>((bytes + 2047) / 2048);
    return path;
  }
  void vanish(const HostPath& file) override {
    stage_.audio.erase(file.text);
    stage_.data.erase(file.text);
  }
  HostPath place(const std::string& name) override { return HostPath(folder_ / name); }

 private:
  TempFolder folder_;
  WriterStage stage_;
  WriterTranscript heard_;
  WriterTranscript scratchHeard_;
  FakeWriter real_{"CDR1", stage_, heard_};
  FakeWriter scratch_{"CDR2", stage_, scratchHeard_};
};

}  // namespace trackloom::fakes
