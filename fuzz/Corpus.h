#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

namespace trackloom::fuzz {

/// Runs a fuzz target on every file of its corpus and counts them; a target ends the test program where it finds a
/// fault.
inline int replay(const std::string& name, const std::function<void(std::string_view)>& target) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(TRACKLOOM_SOURCE_DIR "/fuzz/corpus/" + name)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    target(bytes);
    ++files;
  }
  return files;
}

}  // namespace trackloom::fuzz
