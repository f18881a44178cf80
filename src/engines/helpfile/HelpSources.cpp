#include "engines/helpfile/HelpSources.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <sstream>
#include <stdexcept>

#include "engines/helpfile/HelpBookFile.h"
#include "runtime/Files.h"

namespace trackloom::engines::helpfile {

namespace {

std::string wholeFile(const std::filesystem::path& path) {
  return ReadStart(HostPath(path.string()), LargestHelpFile);
}

struct SourceLine {
  std::size_t indent;
  std::string first;
  std::string rest;
};

SourceLine parted(const std::string& line) {
  const std::size_t start = std::min(line.find_first_not_of(' '), line.size());
  const std::size_t blank = std::min(line.find(' ', start), line.size());
  const std::size_t rest = std::min(line.find_first_not_of(' ', blank), line.size());
  if (rest == line.size()) throw std::invalid_argument("the line \"" + line + "\" says nothing");
  return {start, line.substr(start, blank - start), line.substr(rest)};
}

void eachLine(const std::filesystem::path& path, const std::function<void(const SourceLine&)>& take) {
  std::istringstream lines(wholeFile(path));
  for (std::string line; std::getline(lines, line);)
    if (!line.empty()) take(parted(line));
}

std::vector<HelpBook::Line> linesOf(const std::filesystem::path& path) {
  constexpr std::size_t Step = 2;
  std::vector<HelpBook::Line> lines;
  eachLine(path, [&lines](const SourceLine& line) {
    lines.push_back({static_cast<int>(line.indent / Step), line.rest, line.first});
  });
  return lines;
}

std::map<std::string, std::string> filesOf(const std::filesystem::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.is_regular_file() && entry.path().extension() != ".txt")
      files[entry.path().filename().string()] = wholeFile(entry.path());
  return files;
}

}  // namespace

HelpBook readHelpSources(const HostPath& folder) {
  const std::filesystem::path place(folder.text);
  HelpBook book;
  book.title = "Trackloom Help";
  book.windows = {"main"};
  book.contents = linesOf(place / "contents.txt");
  book.index = linesOf(place / "index.txt");
  eachLine(place / "topics.txt", [&book](const SourceLine& line) { book.topics[std::stoi(line.first)] = line.rest; });
  book.files = filesOf(place);
  if (book.contents.empty()) throw std::invalid_argument("the contents are empty");
  book.firstPage = book.contents.front().place;
  return book;
}

}  // namespace trackloom::engines::helpfile
