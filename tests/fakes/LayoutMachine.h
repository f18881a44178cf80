#pragma once

#include "fakes/Machine.h"

namespace trackloom::fakes {

/// A machine with an empty layout of the kind on a disc of so many free blocks.
class LayoutMachine : public Machine {
 public:
  explicit LayoutMachine(std::int16_t kind, std::int32_t discBlocks = 359849) {
    engines.stage.disc->freeAudio = discBlocks;
    engines.stage.disc->freeData = discBlocks;
    startQuietly();
    newLayout(kind);
    engines.stage.take();
  }
};

}  // namespace trackloom::fakes
