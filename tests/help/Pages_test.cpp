#include <algorithm>
#include <catch2/catch.hpp>
#include <filesystem>
#include <set>
#include <sstream>

#include "engines/ground/EngineSettings.h"
#include "engines/helpfile/HelpBookFile.h"
#include "engines/helpfile/HelpSources.h"
#include "engines/helpfile/Markup.h"
#include "fakes/TempFolder.h"
#include "help/HelpLaunch.h"
#include "words/table/BoxTable.h"

namespace trackloom {

namespace {

using engines::helpfile::plainText;

/// The help as it is shipped, read from the very bytes.
const HelpBook& help() {
  static const HelpBook book = engines::helpfile::helpBook(engines::helpfile::helpFileBytes(
      engines::helpfile::readHelpSources(HostPath(TRACKLOOM_SOURCE_DIR "/assets/help"))));
  return book;
}

std::string fileOf(const std::string& place) {
  return place.substr(0, place.find('#'));
}

std::string nameIn(const std::string& place) {
  const std::size_t sign = place.find('#');
  return sign == std::string::npos ? "" : place.substr(sign + 1);
}

/// The values of an attribute in all marks of a name.
std::vector<std::string> valuesOf(const std::string& file, const std::string& mark, const std::string& attribute) {
  std::vector<std::string> values;
  std::string_view html = help().files.at(file);
  while (const auto piece = engines::helpfile::takePiece(html))
    if (piece->isMark && engines::helpfile::markName(piece->text) == mark)
      if (std::string value = engines::helpfile::attribute(piece->text, attribute); !value.empty())
        values.push_back(std::move(value));
  return values;
}

bool exists(const std::string& place) {
  if (!help().files.contains(fileOf(place))) return false;
  const std::vector<std::string> names = valuesOf(fileOf(place), "a", "name");
  return nameIn(place).empty() || std::find(names.begin(), names.end(), nameIn(place)) != names.end();
}

std::string textOfPage(const std::string& file) {
  for (const HelpBook::Page& page : help().pages)
    if (page.file == file) return page.text;
  return "";
}

/// A part of a page: from the name of the place up to the next heading behind its own.
std::string textOfPlace(const std::string& place) {
  const std::string& html = help().files.at(fileOf(place));
  const std::size_t start = html.find("<a name=\"" + nameIn(place) + "\">");
  return plainText(html.substr(start, html.find("<h", start) - start));
}

/// As it reads on a page: access keys and doubled blanks away.
std::string read(const std::string& words) {
  std::string plain;
  for (std::size_t at = 0; at < words.size(); ++at) {
    if (words[at] == '&' && at + 1 < words.size() && words[at + 1] != ' ') ++at;
    const bool blank = words[at] == ' ' || words[at] == '\r' || words[at] == '\n';
    if (!blank) plain += words[at];
    if (blank && !plain.empty() && plain.back() != ' ') plain += ' ';
  }
  return plain;
}

/// What stands between the places that the program fills in.
std::vector<std::string> fixedParts(const std::string& words) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start < words.size()) {
    const std::size_t end = std::min(words.find('<', start), words.size());
    if (end > start) parts.push_back(words.substr(start, end - start));
    start = std::min(words.find('>', end), words.size() - 1) + 1;
  }
  return parts;
}

bool holds(const std::string& text, const words::BoxRow& row) {
  const std::vector<std::string> parts = fixedParts(read(row.box.text));
  return std::all_of(parts.begin(), parts.end(),
                     [&text](const std::string& part) { return text.find(part) != std::string::npos; });
}

std::vector<std::string> forms() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(TRACKLOOM_SOURCE_DIR "/tests/words"))
    if (entry.path().extension() == ".txt" && entry.path().stem().string().starts_with("frm"))
      names.push_back(entry.path().stem().string());
  return names;
}

/// The topic of a form's table, 0 where it has none.
int topicOf(const std::vector<words::TableLine>& table) {
  for (const words::TableLine& line : table)
    if (line.bare(0) == "help") return std::stoi(line.bare(1));
  return 0;
}

/// What a form asks, and the buttons that are its own, up to an explanation behind a dash.
std::vector<std::string> questionsOf(const std::vector<words::TableLine>& table) {
  const std::set<std::string> everywhere{"OK", "Cancel", "Help", "Close"};
  std::set<std::string> captions;
  for (const words::TableLine& line : table) {
    const std::string kind = line.bare(0);
    if (kind != "option" && kind != "check" && kind != "button") continue;
    const std::string caption = read(line.quoted(2));
    if (!everywhere.contains(caption)) captions.insert(caption.substr(0, caption.find(" - This")));
  }
  return {captions.begin(), captions.end()};
}

bool isListed(const std::string& name) {
  const auto bears = [&name](const HelpBook::Line& line) { return line.name.find(name) != std::string::npos; };
  return std::any_of(help().index.begin(), help().index.end(), bears) ||
         std::any_of(help().contents.begin(), help().contents.end(), bears);
}

}  // namespace

TEST_CASE("Every line of the help's contents and index leads to a place") {
  for (const auto* lines : {&help().contents, &help().index})
    for (const HelpBook::Line& line : *lines) {
      INFO(line.name << " -> " << line.place);
      CHECK(exists(line.place));
    }
  CHECK(help().windows == std::vector<std::string>{"main"});
}

TEST_CASE("Every link and picture of the help is there, and no picture lies unused") {
  std::set<std::string> pictures;
  for (const HelpBook::Page& page : help().pages) {
    for (const std::string& link : valuesOf(page.file, "a", "href")) {
      INFO(page.file << " -> " << link);
      CHECK((link.front() == '#' ? exists(page.file + link) : exists(link)));
    }
    for (const std::string& picture : valuesOf(page.file, "img", "src")) {
      INFO(page.file << " -> " << picture);
      CHECK(help().files.contains(picture));
      pictures.insert(picture);
    }
    CHECK(valuesOf(page.file, "img", "src").size() == valuesOf(page.file, "img", "alt").size());
  }
  for (const auto& [file, bytes] : help().files) {
    INFO(file);
    CHECK((!file.ends_with(".png") || pictures.contains(file)));
    CHECK(bytes.size() < 100000);
  }
}

TEST_CASE("Every page of the help has a title and its place in the contents") {
  for (const HelpBook::Page& page : help().pages) {
    INFO(page.file);
    CHECK_FALSE(page.title.empty());
    CHECK(std::any_of(help().contents.begin(), help().contents.end(),
                      [&page](const HelpBook::Line& line) { return line.place == page.file; }));
  }
}

TEST_CASE("Every topic number of a dialog has a page of its own, and there is no other number") {
  std::set<int> topics;
  std::set<std::string> pages;
  for (const std::string& form : forms())
    if (const int topic = topicOf(words::readTableFile(form + ".txt")); topic != 0) topics.insert(topic);
  for (const auto& [number, place] : help().topics) {
    INFO(number);
    CHECK(exists(place));
    pages.insert(place);
  }
  CHECK(pages.size() == help().topics.size());
  const std::set<int> all{69, 70, 71, 74, 76, 79, 80, 81, 82, 83, 85, 86, 88, 90, 91};
  std::set<int> mapped;
  for (const auto& [number, place] : help().topics) mapped.insert(number);
  CHECK(mapped == all);
  CHECK(std::includes(all.begin(), all.end(), topics.begin(), topics.end()));
}

TEST_CASE("The page of a dialog tells of all that it asks") {
  for (const std::string& form : forms()) {
    const auto table = words::readTableFile(form + ".txt");
    const int topic = topicOf(table);
    if (topic == 0) continue;
    const std::string page = textOfPage(help().topics.at(topic));
    for (const std::string& question : questionsOf(table)) {
      INFO(form << ": " << question);
      CHECK(page.find(question) != std::string::npos);
    }
  }
}

TEST_CASE("Every dialog has its place in the help") {
  for (const std::string& form : forms())
    for (const words::TableLine& line : words::readTableFile(form + ".txt"))
      if (line.bare(0) == "form" && !line.quoted(2).empty() && line.quoted(2) != "Trackloom") {
        INFO(form << ": " << line.quoted(2));
        CHECK((isListed(line.quoted(2)) || topicOf(words::readTableFile(form + ".txt")) != 0 ||
               line.quoted(2).starts_with("Print - ")));
      }
}

TEST_CASE("Every command has its place in the help") {
  const std::string page = textOfPage("commands.htm");
  for (const words::TableLine& line : words::readTableFile("frmListing.txt"))
    if ((line.bare(0) == "tool" || line.bare(0) == "opener") && !line.quoted(2).empty()) {
      INFO(line.quoted(2));
      CHECK(page.find(read(line.quoted(2))) != std::string::npos);
    }
}

TEST_CASE("Every message box stands in the help's index, and its words on the page") {
  for (const words::BoxRow& row : words::allBoxes()) {
    INFO(row.box.title << ": " << row.box.text);
    const std::string begin = "Message: " + row.box.title + ": ";
    CHECK(std::any_of(help().index.begin(), help().index.end(), [&](const HelpBook::Line& line) {
      return line.name.starts_with(begin) && holds(textOfPlace(line.place), row);
    }));
  }
}

TEST_CASE("Every setting of Engines.ini is explained on its page") {
  const fakes::TempFolder folder;
  engines::explainEngineSettings(HostPath(folder.path()));
  const std::string page = textOfPage("engines.htm");
  std::istringstream lines(folder.read("Engines.ini"));
  int settings = 0;
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == ';') continue;
    INFO(line);
    ++settings;
    CHECK(page.find(line.substr(0, line.find(" ="))) != std::string::npos);
  }
  CHECK(settings > 10);
}

}  // namespace trackloom
