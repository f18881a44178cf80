#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ports/MessageBoxes.h"
#include "words/table/WordTable.h"

namespace trackloom::words {

/// A message box of the program: its words, the forms that stand in front when it comes, and who raises it. `<name>` in
/// the text stands for any words.
struct BoxRow {
  std::size_t line = 0;
  MessageBox box;
  std::vector<std::string> over;
  std::vector<std::string> by;

  bool fits(const MessageBox& shown) const;
  bool mayStandOver(const std::string& form) const;
};

/// Reads lines of the form: box "<title>" <buttons> <icon> over <form>... by <name>... "<text>". Throws
/// std::runtime_error with the number of the line that makes no sense.
std::vector<BoxRow> readBoxes(const std::vector<TableLine>& lines);

/// The boxes of tests/words/boxes.txt.
std::vector<BoxRow> allBoxes();

/// A box as the table would have it, without its places.
std::string written(const MessageBox& box);

/// What is wrong with a box that came over this form, "" when the table has it.
std::string faultOf(const std::vector<BoxRow>& table, const MessageBox& box, const std::string& over);

/// The note that a box of the table has come over this form.
std::string noteOf(const std::vector<BoxRow>& table, const MessageBox& box, const std::string& over);

/// The rows, each with each of its forms, of which no note tells, as a reader would look for them.
std::vector<std::string> missingIn(const std::vector<std::string>& notes, const std::vector<BoxRow>& table);

}  // namespace trackloom::words
