#include <catch2/catch.hpp>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "Targets.h"

namespace trackloom {

namespace {

/// Runs a fuzz target on every file of its corpus; a target ends the test program where it finds a fault.
int replay(const std::string& name, const std::function<void(std::string_view)>& target) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(TRACKLOOM_SOURCE_DIR "/fuzz/corpus/" + name)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    target(bytes);
    ++files;
  }
  return files;
}

}  // namespace

TEST_CASE("The corpus of the options fuzzer runs through") {
  CHECK(replay("options", fuzz::runOptions) > 20);
}

TEST_CASE("The corpus of the values fuzzer runs through") {
  CHECK(replay("values", fuzz::runValues) > 20);
}

TEST_CASE("The corpus of the bars fuzzer runs through") {
  CHECK(replay("dock_state", fuzz::runDockState) > 20);
}

TEST_CASE("The corpus of the tags fuzzer runs through") {
  fuzz::TagTrial trial;
  CHECK(replay("tags", [&](std::string_view bytes) { trial.run(bytes); }) > 20);
}

TEST_CASE("The corpus of the layouts fuzzer runs through") {
  CHECK(replay("layout", [](std::string_view bytes) { fuzz::LayoutTrial().run(bytes); }) > 20);
}

}  // namespace trackloom
