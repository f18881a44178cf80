#include <catch2/catch.hpp>

#include "Corpus.h"
#include "DiscReplies.h"

namespace trackloom::engines::discdb {

TEST_CASE("The corpus of the disc database's replies runs through") {
  CHECK(fuzz::replay("replies", fuzz::runReplies) > 20);
}

}  // namespace trackloom::engines::discdb
