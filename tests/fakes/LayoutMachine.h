#pragma once

#include "fakes/Machine.h"

namespace trackloom::fakes {

/// A machine with an empty layout of the kind on a disc of so many free blocks.
class LayoutMachine : public Machine {
 public:
  explicit LayoutMachine(std::int16_t kind, std::int32_t discBlocks = 359849);
  ~LayoutMachine() override;
};

}  // namespace trackloom::fakes
