#include <cstddef>
#include <cstdint>

#include "DiscFolders.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static trackloom::fuzz::DiscFolderTrial trial;
  trial.run({reinterpret_cast<const char*>(data), size});
  return 0;
}
