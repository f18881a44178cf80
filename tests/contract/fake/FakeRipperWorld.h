#pragma once

#include "contract/RipperWorld.h"
#include "fakes/FakeEncoder.h"
#include "fakes/FakeRipper.h"
#include "fakes/TempFolder.h"

namespace trackloom::fakes {

/// The rip engine in memory as the contract sees it: its discs have no sound, and its trouble is scripted.
class FakeRipperWorld final : public contract::RipperWorld {
 public:
  FakeRipperWorld() {
    folder_.write("out/keep", "");
    ripper_.listen(&heard_);
  }

  bool can(contract::RipAbility) const override { return false; }
  CDRipperX& ripper() override { return ripper_; }
  Mp3Stream& encoder() override { return encoder_.Encoder(); }
  RipperTranscript& heard() override { return heard_; }
  bool runUntil(const std::function<bool()>& done) override {
    while (!done() && ripper_.busy()) ripper_.step();
    return done();
  }
  void settle() override { ripper_.finish(); }

  void insert(const std::vector<contract::DiscPart>& tracks) override {
    stage_.disc.emplace();
    for (const contract::DiscPart& track : tracks) stage_.disc->push_back({track.start, track.length, track.audio});
  }
  void takeDiscOut() override { stage_.disc.reset(); }
  void refuseDrive() override { stage_.drives[0].refuses = true; }
  void spoil(std::int32_t) override {}
  void makeHang(std::int32_t) override {}
  std::string soundOf(std::int32_t, std::int32_t) override { return ""; }
  HostPath out(const std::string& name) override { return folder_.host("out/" + name); }

 private:
  TempFolder folder_;
  RipperStage stage_;
  RipperTranscript heard_;
  FakeRipper ripper_{stage_};
  FakeEncoder encoder_{stage_};
};

}  // namespace trackloom::fakes
