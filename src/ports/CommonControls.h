#pragma once

#include <cstdint>

namespace trackloom {

/// The window system's start-up call for its common controls.
class CommonControls {
 public:
  virtual ~CommonControls() = default;
  virtual bool initialise(std::int32_t structureSize, std::int32_t classFlags) = 0;
};

}  // namespace trackloom
