#include "words/FormTable.h"

#include <algorithm>
#include <filesystem>

#include "words/table/WordTable.h"

namespace trackloom::words {

namespace {

using Part = std::vector<std::vector<std::string>*>;

/// The parts of the table that the lines behind this heading go to; empty: it is no heading.
Part headed(FormTable& table, const TableLine& line) {
  if (line.bare(0) != "loaded") return {};
  if (line.bare(1) == "audio") return {&table.loadedAudio};
  if (line.bare(1) == "MP3") return {&table.loadedMp3};
  if (line.words.size() > 1) throw std::runtime_error(line.name() + ": loaded audio, loaded MP3 or loaded");
  return {&table.loadedAudio, &table.loadedMp3};
}

}  // namespace

FormTable formTable(const std::string& form) {
  const std::string name = form + ".txt";
  FormTable table;
  Part part{&table.designed};
  for (const TableLine& line : readTableFile(name)) {
    if (const Part next = at("tests/words/" + name, [&] { return headed(table, line); }); !next.empty())
      part = next;
    else if (line.bare(0) == "help")
      table.topic = std::stol(line.bare(1));
    else
      for (auto* lines : part) lines->push_back(written(line));
  }
  return table;
}

std::vector<std::string> formsWithTable() {
  std::vector<std::string> forms;
  for (const auto& entry : std::filesystem::directory_iterator(TRACKLOOM_SOURCE_DIR "/tests/words")) {
    const std::string name = entry.path().stem().string();
    if (entry.path().extension() == ".txt" && name.starts_with("frm")) forms.push_back(name);
  }
  std::sort(forms.begin(), forms.end());
  return forms;
}

}  // namespace trackloom::words
