#include <algorithm>
#include <catch2/catch.hpp>
#include <filesystem>
#include <map>
#include <random>
#include <vector>

#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

using fakes::outputOf;
namespace fs = std::filesystem;

namespace {

/// The bytes of each file by its path.
using Tree = std::map<std::string, std::string>;

std::string utf8(char32_t sign) {
  const auto byte = [](char32_t value) { return std::string(1, static_cast<char>(value)); };
  if (sign < 0x80) return byte(sign);
  if (sign < 0x800) return byte(0xC0 | sign >> 6) + byte(0x80 | (sign & 0x3F));
  return byte(0xE0 | sign >> 12) + byte(0x80 | (sign >> 6 & 0x3F)) + byte(0x80 | (sign & 0x3F));
}

/// Whether a Joliet name holds the character as it is: one of 16 bits, no control, no surrogate, none of * / : ; ? \.
bool standsAsItIs(char32_t sign) {
  const bool control = sign < 0x20 || (sign >= 0x7F && sign < 0xA0);
  const bool noCharacter = (sign >= 0xD800 && sign < 0xE000) || (sign >= 0xFDD0 && sign < 0xFDF0) || sign >= 0xFFFE;
  return !control && !noCharacter && std::u32string_view(U"*/:;?\\").find(sign) == std::u32string_view::npos;
}

/// A tree of files in folders up to six deep, with names of all alphabets, and of bytes of any length.
class RandomTree {
 public:
  explicit RandomTree(std::uint32_t seed) : random_(seed) {
    const std::uint32_t files = 1 + below(40);
    while (files_.size() < files) {
      std::string path = folder() + name() + ".mp3";
      files_[std::move(path)] = bytes();
    }
  }
  const Tree& files() const { return files_; }

 private:
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_()) % limit; }

  /// The number keeps names apart that differ only in case.
  std::string name() {
    std::string text = std::to_string(++count_) + " ";
    for (std::uint32_t signs = below(40); signs > 0;) {
      const char32_t sign = below(3) == 0 ? below(0x100) : below(3) == 0 ? below(0x10000) : below(0x600);
      if (!standsAsItIs(sign)) continue;
      text += utf8(sign);
      --signs;
    }
    return text;
  }
  /// The root, one that is there, or one deeper than that.
  std::string folder() {
    std::string parent;
    if (!folders_.empty() && below(4) != 0) parent = folders_[below(static_cast<std::uint32_t>(folders_.size()))];
    if (below(3) != 0 || std::ranges::count(parent, '/') >= 6) return parent;
    folders_.push_back(parent + name() + "#/");
    return folders_.back();
  }
  std::string bytes() {
    const std::uint32_t most[] = {1, 3, 2048, 2049, 70000};
    return fakes::noise(below(most[below(5)]), random_());
  }

  std::mt19937 random_;
  int count_ = 0;
  std::vector<std::string> folders_;
  Tree files_;
};

/// What xorriso finds in an image's Joliet tree.
Tree extracted(const std::string& image, const fs::path& out) {
  outputOf("LC_ALL=C.UTF-8 xorriso -read_fs norock -osirrox on -indev '" + image + "' -extract / '" + out.string() +
           "'");
  Tree files;
  for (const auto& entry : fs::recursive_directory_iterator(out))
    if (entry.is_regular_file()) files[fs::relative(entry.path(), out).string()] = fakes::contentOf(entry.path());
  return files;
}

}  // namespace

TEST_CASE("Images of random trees are extracted by another program as their sources are") {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    CAPTURE(seed);
    FakeWorld world;
    const RandomTree tree(seed);
    int number = 0;
    for (const auto& [path, bytes] : tree.files()) {
      std::string disc = "\\" + path;
      std::ranges::replace(disc, '/', '\\');
      REQUIRE(world.writer->AddDataFile(DiscPath(disc), world.folder.file("source" + std::to_string(++number), bytes)));
    }
    const std::string image = world.folder.host("made.iso").text;
    REQUIRE(world.writer->CreateIsoImage(HostPath(image)));
    const Tree found = extracted(image, world.folder.host("out").text);
    CHECK(found.size() == tree.files().size());
    for (const auto& [path, bytes] : tree.files()) {
      CAPTURE(path);
      REQUIRE(found.contains(path));
      CHECK((found.at(path) == bytes));
    }
  }
}

}  // namespace trackloom::engines::writer
