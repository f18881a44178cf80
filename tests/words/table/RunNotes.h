#pragma once

#include <string>
#include <vector>

namespace trackloom::words {

/// Notes of a whole run of ctest, which its many processes add to one file line by line: each test that has passed, and
/// what it has seen. A program started by hand, without the variable TRACKLOOM_NOTES, notes nothing.
void note(const std::string& line);

/// The notes so far; empty where nothing is noted.
std::vector<std::string> notesOfRun();

/// The note of a test program that it has so many tests, and that one of them has passed.
void noteSuite(const std::string& suite, std::size_t tests);
void notePassed(const std::string& suite, const std::string& test);

/// Those of the suites of which not every test has passed in the run, each with its count.
std::vector<std::string> unfinished(const std::vector<std::string>& suites, const std::vector<std::string>& notes);

}  // namespace trackloom::words
