#include "fakes/LayoutMachine.h"

namespace trackloom::fakes {

LayoutMachine::LayoutMachine(std::int16_t kind, std::int32_t discBlocks) {
  engines.stage.disc->freeAudio = discBlocks;
  engines.stage.disc->freeData = discBlocks;
  startQuietly();
  newLayout(kind);
  engines.stage.take();
}

LayoutMachine::~LayoutMachine() = default;

}  // namespace trackloom::fakes
