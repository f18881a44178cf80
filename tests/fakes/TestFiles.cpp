#include "fakes/TestFiles.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <utility>

#include "fakes/TempFolder.h"

namespace trackloom::fakes {

std::string contentOf(const std::filesystem::path& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return std::move(content).str();
}

std::string noise(std::size_t bytes, std::size_t seed) {
  std::string text(bytes, '\0');
  auto state = static_cast<std::uint32_t>(seed) * 2654435761U + 1;
  for (char& byte : text) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<char>(state >> 24);
  }
  return text;
}

std::string littleEndian(std::uint32_t value, int bytes) {
  std::string text;
  for (int at = 0; at < bytes; ++at) text += static_cast<char>(value >> (8 * at) & 0xFFU);
  return text;
}

std::string wav(const std::string& samples) {
  const auto length = static_cast<std::uint32_t>(samples.size());
  return "RIFF" + littleEndian(36 + length, 4) + "WAVEfmt " + littleEndian(16, 4) + littleEndian(1, 2) +
         littleEndian(2, 2) + littleEndian(44100, 4) + littleEndian(44100 * 4, 4) + littleEndian(4, 2) +
         littleEndian(16, 2) + "data" + littleEndian(length, 4) + samples;
}

std::string outputOf(const std::string& command) {
  const TempFolder folder;
  const std::string target = folder.host("out").text;
  if (std::system((command + " >" + target + " 2>/dev/null").c_str()) != 0) return "";
  return contentOf(target);
}

}  // namespace trackloom::fakes
