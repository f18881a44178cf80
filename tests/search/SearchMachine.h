#pragma once

#include <functional>
#include <string>

#include "fakes/LayoutMachine.h"

namespace trackloom::fakes {

/// A machine with an empty layout of the kind, and one hard drive, "disk", which a test fills.
class SearchMachine : public LayoutMachine {
 public:
  explicit SearchMachine(std::int16_t kind, std::int32_t discBlocks = 359849);
  ~SearchMachine() override;

  /// The path of a file or folder of the drive.
  std::string disk(const std::string& name = "") const;
  /// A file of the drive of so many bytes, which counts as audio and as data of so many blocks.
  void makeFile(const std::string& name, std::size_t bytes = 1, std::int32_t blocks = 100);

  void search(std::function<void(frmSearch&)> script);
  /// Presses the button that starts, and answers the box that comes at the end.
  void run(frmSearch& form);
  /// Opens the window, presses the button that starts, and closes it; what was found.
  std::string found(int choice = 0);

  SearchForms& forms();
};

/// The names in the list, each with a semicolon behind it.
std::string namesOf(const frmSearch& form);

}  // namespace trackloom::fakes
