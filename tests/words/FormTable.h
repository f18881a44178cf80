#pragma once

#include <map>
#include <string>
#include <vector>

namespace trackloom::words {

/// A form's table: its lines as designed, and the lines in which it differs once it is loaded, on an audio and on an
/// MP3 layout.
struct FormTable {
  std::vector<std::string> designed;
  std::vector<std::string> loadedAudio;
  std::vector<std::string> loadedMp3;
  /// The help topic behind its cmdHelp, 0: it has none.
  long topic = 0;
};

/// The table tests/words/<form>.txt. A line "loaded" begins what holds on both kinds of layout, "loaded audio" and
/// "loaded MP3" what holds on one. Throws std::runtime_error with the file and the line.
FormTable formTable(const std::string& form);

/// The forms that have a table.
std::vector<std::string> formsWithTable();

}  // namespace trackloom::words
