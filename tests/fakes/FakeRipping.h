#pragma once

#include <memory>

#include "fakes/FakeDatabase.h"
#include "fakes/FakeEncoder.h"
#include "fakes/FakeRipper.h"

namespace trackloom::fakes {

/// What a program rips with: makers of fake engines, encoders and disc databases on one stage.
struct FakeRipping {
  FakeRipping();
  ~FakeRipping();

  /// Sets each fake that it makes on the stage.
  template <class Port, class Maker, class Fake>
  class Makes final : public Maker {
   public:
    explicit Makes(RipperStage& stage);
    ~Makes() override;
    std::unique_ptr<Port> create() override;

   private:
    RipperStage& stage_;
  };

  RipperStage stage;
  Makes<CDRipperX, RipEngines, FakeRipper> rippers;
  Makes<MP3EncoderX, MP3Encoders, FakeEncoder> encoders;
  Makes<DiscDatabase, DiscDatabases, FakeDatabase> databases;
};

}  // namespace trackloom::fakes
