#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "runtime/Paths.h"

namespace trackloom::test {

/// A folder of this test alone, gone with it.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "trackloom-writer-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  HostPath host(const std::string& name) const { return HostPath((path_ / name).string()); }

  HostPath file(const std::string& name, const std::string& bytes) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << bytes;
    return host(name);
  }

 private:
  std::filesystem::path path_;
};

inline std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Bytes that differ from seed to seed and hardly compress.
inline std::string noise(std::size_t bytes, std::size_t seed) {
  std::string text(bytes, '\0');
  auto state = static_cast<std::uint32_t>(seed) * 2654435761U + 1;
  for (char& byte : text) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<char>(state >> 24);
  }
  return text;
}

inline std::string littleEndian(std::uint32_t value, int bytes) {
  std::string text;
  for (int at = 0; at < bytes; ++at) text += static_cast<char>(value >> (8 * at) & 0xFFU);
  return text;
}

/// A RIFF/WAVE file of 16-bit stereo PCM at 44,100 Hz around these samples (Microsoft's Multimedia Programming
/// Interface and Data Specifications 1.0, chapter 3).
inline std::string wav(const std::string& samples) {
  const auto length = static_cast<std::uint32_t>(samples.size());
  return "RIFF" + littleEndian(36 + length, 4) + "WAVEfmt " + littleEndian(16, 4) + littleEndian(1, 2) +
         littleEndian(2, 2) + littleEndian(44100, 4) + littleEndian(44100 * 4, 4) + littleEndian(4, 2) +
         littleEndian(16, 2) + "data" + littleEndian(length, 4) + samples;
}

/// What a program of the test machine prints; "" when it fails. `command` is for the shell and made by the test alone.
inline std::string outputOf(const std::string& command) {
  const TempFolder folder;
  const std::string target = folder.host("out").text;
  if (std::system((command + " >" + target + " 2>/dev/null").c_str()) != 0) return "";
  return contentOf(target);
}

}  // namespace trackloom::test
