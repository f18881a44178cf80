#include "writing/WrittenDialogue.h"

#include <algorithm>
#include <catch2/catch.hpp>
#include <fstream>

namespace trackloom {

std::vector<std::string> dialogue(const std::string& name) {
  std::ifstream file(std::string(TRACKLOOM_SOURCE_DIR) + "/tests/writing/dialogues/" + name + ".txt");
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);)
    if (!line.starts_with("#")) lines.push_back(line);
  return lines;
}

void checkDialogue(Dialogue& machine, const std::string& name) {
  const std::vector<std::string> heard = machine.heard();
  const std::vector<std::string> wanted = dialogue(name);
  REQUIRE_FALSE(wanted.empty());
  CHECK(machine.desk.finished());
  for (std::size_t line = 0; line < std::max(heard.size(), wanted.size()); ++line) {
    INFO(name << ".txt, at line " << line + 1 << " without its head");
    REQUIRE((line < heard.size() ? heard[line] : "the end") == (line < wanted.size() ? wanted[line] : "the end"));
  }
}

void insert(Dialogue& machine, const fakes::FakeDisc& disc) {
  machine.hear("a disc goes in");
  machine.engines.stage.disc = disc;
}

}  // namespace trackloom
