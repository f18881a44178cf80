#include <cstddef>
#include <cstdint>

#include "Targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static trackloom::fuzz::TagTrial trial;
  trial.run({reinterpret_cast<const char*>(data), size});
  return 0;
}
