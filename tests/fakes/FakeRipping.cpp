#include "fakes/FakeRipping.h"

namespace trackloom::fakes {

template <class Port, class Maker, class Fake>
FakeRipping::Makes<Port, Maker, Fake>::Makes(RipperStage& stage) : stage_(stage) {}

template <class Port, class Maker, class Fake>
FakeRipping::Makes<Port, Maker, Fake>::~Makes() = default;

template <class Port, class Maker, class Fake>
std::unique_ptr<Port> FakeRipping::Makes<Port, Maker, Fake>::create() {
  return std::make_unique<Fake>(stage_);
}

FakeRipping::FakeRipping() : rippers(stage), encoders(stage), databases(stage) {}

FakeRipping::~FakeRipping() = default;

}  // namespace trackloom::fakes
