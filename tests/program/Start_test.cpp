#include <catch2/catch.hpp>
#include <string>

#include "fakes/TestFiles.h"

namespace trackloom {

TEST_CASE("The start waits for no library of the web, which brings forty others along") {
  const std::string needed = fakes::outputOf("readelf --dynamic '" TRACKLOOM_PROGRAM "/trackloom'");
  CHECK(needed.find("libQt6Widgets") != std::string::npos);
  CHECK(needed.find("libcurl") == std::string::npos);
}

}  // namespace trackloom
