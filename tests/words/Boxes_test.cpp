#include <stdlib.h>

#include <catch2/catch.hpp>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <utility>

#include "words/table/BoxTable.h"
#include "words/table/RunNotes.h"

namespace trackloom::words {

using Lines = std::vector<std::string>;

namespace {

const std::string Table =
    "# Two boxes of one title.\n"
    "box \"Save\" OK-Cancel question over frmOne frmTwo by Save frmTwo.cmdOK\n"
    "    \"Save '<name>' \" +\n"
    "    \"now?\\n\\nTrack #<n>.\"\n"
    "box \"Save\" OK critical over anything by Program \"Error: <words>\"\n";

std::vector<BoxRow> madeUp() {
  return readBoxes(readTable(Table));
}

MessageBox question(const std::string& text) {
  return {"Save", text, BoxButtons::OkCancel, BoxIcon::Question};
}

std::string sentenceOf(const std::string& table) {
  try {
    readBoxes(readTable(table));
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

/// Every name and word that stands in src/.
std::set<std::string> wordsOfSources() {
  std::set<std::string> words;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(TRACKLOOM_SOURCE_DIR "/src")) {
    std::ifstream file(entry.path());
    std::string word;
    for (char sign; file.get(sign);) {
      if (std::isalnum(static_cast<unsigned char>(sign)) != 0)
        word += sign;
      else
        words.insert(std::exchange(word, {}));
    }
  }
  return words;
}

/// The names in `by`, each part of a dotted one by itself.
Lines namesOf(const BoxRow& row) {
  Lines names;
  for (const std::string& name : row.by) {
    std::istringstream parts(name);
    for (std::string part; std::getline(parts, part, '.');) names.push_back(part);
  }
  return names;
}

Lines noted() {
  const char* suites = ::getenv("TRACKLOOM_SUITES");
  std::istringstream list(suites == nullptr ? "nothing" : suites);
  Lines names;
  for (std::string name; list >> name;) names.push_back(name);
  return names;
}

}  // namespace

TEST_CASE("A box fits its row only with the same words, buttons and icon") {
  const auto table = madeUp();
  CHECK(faultOf(table, question("Save 'a' now?\r\n\r\nTrack #12."), "frmTwo").empty());
  CHECK_FALSE(faultOf(table, question("Save 'a' now?\r\n\r\nTrack #."), "frmTwo").empty());
  CHECK_FALSE(faultOf(table, question("Save 'a' now? Track #1."), "frmTwo").empty());
  CHECK_FALSE(faultOf(table, question("Save 'a' now?\r\n\r\nTrack #1"), "frmTwo").empty());
  MessageBox other = question("Save 'a' now?\r\n\r\nTrack #1.");
  other.icon = BoxIcon::Information;
  CHECK_FALSE(faultOf(table, other, "frmTwo").empty());
  other = question("Save 'a' now?\r\n\r\nTrack #1.");
  other.buttons = BoxButtons::YesNo;
  CHECK_FALSE(faultOf(table, other, "frmTwo").empty());
  other = question("Save 'a' now?\r\n\r\nTrack #1.");
  other.title = "save";
  CHECK_FALSE(faultOf(table, other, "frmTwo").empty());
}

TEST_CASE("A box may come only over the forms of its row") {
  const auto table = madeUp();
  const MessageBox box = question("Save 'a' now?\r\n\r\nTrack #1.");
  CHECK(faultOf(table, box, "frmThree").find("boxes.txt:2 has no box over frmThree") != std::string::npos);
  const MessageBox error{"Save", "Error: disk full", BoxButtons::Ok, BoxIcon::Critical};
  CHECK(faultOf(table, error, "frmThree").empty());
  CHECK(faultOf(table, error, "nothing").empty());
}

TEST_CASE("What came of the table is known by its row and its form") {
  const auto table = madeUp();
  const MessageBox box = question("Save 'a' now?\r\n\r\nTrack #1.");
  const MessageBox error{"Save", "Error: disk full", BoxButtons::Ok, BoxIcon::Critical};
  Lines notes{"suite x 1", noteOf(table, box, "frmTwo")};
  CHECK(missingIn(notes, table).size() == 2);
  CHECK(missingIn(notes, table)[0].starts_with("boxes.txt:2 over frmOne: box \"Save\" OK-Cancel question"));
  notes.push_back(noteOf(table, error, "frmThree"));
  notes.push_back(noteOf(table, box, "frmOne"));
  CHECK(missingIn(notes, table).empty());
}

TEST_CASE("A line of boxes that makes no sense is told by its number") {
  CHECK(sentenceOf("\n\nbox \"A\" OK sunny over x by y \"t\"") == "line 3: nothing is called 'sunny'");
  CHECK(sentenceOf("box \"A\" Maybe question over x by y \"t\"") == "line 1: nothing is called 'Maybe'");
  CHECK(sentenceOf("box \"A\" OK question by y z u \"t\"") == "line 1: no 'over'");
  CHECK(sentenceOf("box \"A\" OK question over by y z \"t\"") == "line 1: nothing behind 'over'");
  CHECK(sentenceOf("box \"A\" OK question over x by y z") == "line 1: no box with a title and a text");
}

TEST_CASE("A suite counts as run when each of its tests has passed") {
  const Lines notes{"suite a 2", "test a one", "suite a 2", "test a two", "test a two", "suite b 2", "test b one"};
  CHECK(unfinished({"a"}, notes).empty());
  CHECK(unfinished({"a", "b", "c"}, notes) == Lines{"b (1 passed)", "c (0 passed)"});
  CHECK(unfinished({"a"}, {}) == Lines{"a (0 passed)"});
}

TEST_CASE("The names behind the boxes stand in the sources") {
  const std::set<std::string> words = wordsOfSources();
  for (const BoxRow& row : allBoxes())
    for (const std::string& name : namesOf(row)) {
      INFO("boxes.txt:" << row.line << " " << name);
      CHECK(words.contains(name));
    }
}

// Runs behind all other tests of a whole run, and judges nothing behind a part of them.
TEST_CASE("Every box of the table has come in this run", "[.][run-notes]") {
  const Lines notes = notesOfRun();
  const Lines lacking = unfinished(noted(), notes);
  if (!lacking.empty()) {
    WARN("Not judged: only a whole run of the tests raises every box, and these are not through: " +
         Catch::Detail::stringify(lacking));
    return;
  }
  for (const std::string& box : missingIn(notes, allBoxes())) FAIL_CHECK("No test raised tests/words/" << box);
}

}  // namespace trackloom::words
