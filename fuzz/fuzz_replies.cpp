#include <cstddef>
#include <cstdint>

#include "DiscReplies.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  trackloom::fuzz::runReplies({reinterpret_cast<const char*>(data), size});
  return 0;
}
