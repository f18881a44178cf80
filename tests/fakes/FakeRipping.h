#pragma once

#include <memory>

#include "fakes/FakeDatabase.h"
#include "fakes/FakeEncoder.h"
#include "fakes/FakeRipper.h"

namespace trackloom::fakes {

/// What a program rips with: makers of fake engines, encoders and disc databases on one stage.
struct FakeRipping {
  template <class Port, class Maker, class Fake>
  class Makes final : public Maker {
   public:
    explicit Makes(RipperStage& stage) : stage_(stage) {}
    std::unique_ptr<Port> create() override { return std::make_unique<Fake>(stage_); }

   private:
    RipperStage& stage_;
  };

  RipperStage stage;
  Makes<CDRipperX, RipEngines, FakeRipper> rippers{stage};
  Makes<MP3EncoderX, MP3Encoders, FakeEncoder> encoders{stage};
  Makes<DiscDatabase, DiscDatabases, FakeDatabase> databases{stage};
};

}  // namespace trackloom::fakes
