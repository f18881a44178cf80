#include <catch2/catch.hpp>
#include <filesystem>
#include <string>

#include "DiscFolders.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::ripper {

TEST_CASE("Every disc folder of the corpus is read as it was listed, cut short and changed at any byte too") {
  fuzz::DiscFolderTrial trial;
  int discs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(TRACKLOOM_SOURCE_DIR "/fuzz/corpus/disc_folder")) {
    const std::string bytes = fakes::contentOf(entry.path());
    trial.run(bytes);
    for (std::size_t at = 0; at < bytes.size(); at += 7) {
      trial.run(bytes.substr(0, at));
      std::string changed = bytes;
      changed[at] = static_cast<char>(changed[at] ^ 0x15);
      trial.run(changed);
    }
    ++discs;
  }
  CHECK(discs >= 10);
}

}  // namespace trackloom::engines::ripper
