#include <cstddef>
#include <cstdint>

#include "HelpFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  trackloom::fuzz::runHelpFile({reinterpret_cast<const char*>(data), size});
  return 0;
}
