#include "words/table/RunNotes.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <set>
#include <stdexcept>

namespace trackloom::words {

namespace {

std::string notesFile() {
  const char* file = ::getenv("TRACKLOOM_NOTES");
  return file == nullptr ? "" : file;
}

std::string suiteNote(const std::string& suite) {
  return "suite " + suite + " ";
}

std::string testNote(const std::string& suite) {
  return "test " + suite + " ";
}

/// The different notes that begin with this.
std::set<std::string> beginningWith(const std::string& start, const std::vector<std::string>& notes) {
  std::set<std::string> found;
  for (const std::string& line : notes)
    if (line.starts_with(start)) found.insert(line.substr(start.size()));
  return found;
}

}  // namespace

void note(const std::string& line) {
  const std::string path = notesFile();
  if (path.empty()) return;
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  const std::string whole = line + "\n";
  // One write a line, so that lines of processes side by side do not mix.
  const bool noted = ::write(file, whole.data(), whole.size()) == static_cast<ssize_t>(whole.size());
  ::close(file);
  if (!noted) throw std::runtime_error(path + " takes no note");
}

std::vector<std::string> notesOfRun() {
  std::ifstream file(notesFile());
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

void noteSuite(const std::string& suite, std::size_t tests) {
  note(suiteNote(suite) + std::to_string(tests));
}

void notePassed(const std::string& suite, const std::string& test) {
  note(testNote(suite) + test);
}

std::vector<std::string> unfinished(const std::vector<std::string>& suites, const std::vector<std::string>& notes) {
  std::vector<std::string> lacking;
  for (const std::string& suite : suites) {
    const std::set<std::string> counts = beginningWith(suiteNote(suite), notes);
    const std::string passed = std::to_string(beginningWith(testNote(suite), notes).size());
    if (counts != std::set{passed}) lacking.push_back(suite + " (" + passed + " passed)");
  }
  return lacking;
}

}  // namespace trackloom::words
