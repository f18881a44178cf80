#include "runtime/MountTables.h"

#include <catch2/catch.hpp>

namespace trackloom {

TEST_CASE("Words of mount tables mean what their three octal digits say, and stand as they are where there are none") {
  CHECK(unescaped("/mnt/a\\040b\\134c\\011d\\012") == "/mnt/a b\\c\td\n");
  CHECK(unescaped("/plain") == "/plain");
  CHECK(unescaped("\\\\040") == "\\ ");
  for (const char* odd : {"", "\\", "\\0", "\\04", "\\xyz", "\\098", "a\\", "\\ 40"}) CHECK(unescaped(odd) == odd);
}

}  // namespace trackloom
