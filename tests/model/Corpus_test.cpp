#include <catch2/catch.hpp>

#include "Corpus.h"
#include "Targets.h"

namespace trackloom {

TEST_CASE("The corpus of the options fuzzer runs through") {
  CHECK(fuzz::replay("options", fuzz::runOptions) > 20);
}

TEST_CASE("The corpus of the values fuzzer runs through") {
  CHECK(fuzz::replay("values", fuzz::runValues) > 20);
}

TEST_CASE("The corpus of the bars fuzzer runs through") {
  CHECK(fuzz::replay("dock_state", fuzz::runDockState) > 20);
}

TEST_CASE("The corpus of the tags fuzzer runs through") {
  fuzz::TagTrial trial;
  CHECK(fuzz::replay("tags", [&](std::string_view bytes) { trial.run(bytes); }) > 20);
}

TEST_CASE("The corpus of the layouts fuzzer runs through") {
  CHECK(fuzz::replay("layout", [](std::string_view bytes) { fuzz::LayoutTrial().run(bytes); }) > 20);
}

}  // namespace trackloom
