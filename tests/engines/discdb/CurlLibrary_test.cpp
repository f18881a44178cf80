#include "engines/discdb/CurlLibrary.h"

#include <catch2/catch.hpp>

#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

TEST_CASE("A system without the web library, or with one that lacks a function, is told by the library's name") {
  using Catch::Contains;
  CHECK_THROWS_WITH(loadCurl("libof-no-system.so.4"),
                    Contains("The web library: ") && Contains("libof-no-system.so.4"));
  CHECK_THROWS_WITH(loadCurl("libc.so.6"), Contains("The web library: ") && Contains("curl_global_init"));
  CHECK_THROWS_AS(loadCurl("libof-no-system.so.4"), RuntimeError);
  CHECK(&curl() == &curl());
}

}  // namespace trackloom::engines::discdb
