#pragma once

#include <functional>
#include <string>
#include <utility>

#include "fakes/LayoutMachine.h"

namespace trackloom::fakes {

/// A machine with an empty layout of the kind, and one hard drive, "disk", which a test fills.
class SearchMachine : public LayoutMachine {
 public:
  explicit SearchMachine(std::int16_t kind, std::int32_t discBlocks = 359849) : LayoutMachine(kind, discBlocks) {
    std::filesystem::create_directories(folder / "disk");
    drives.add(disk());
  }

  /// The path of a file or folder of the drive.
  std::string disk(const std::string& name = "") const { return folder / ("disk/" + name); }
  /// A file of the drive of so many bytes, which counts as audio and as data of so many blocks.
  void makeFile(const std::string& name, std::size_t bytes = 1, std::int32_t blocks = 100) {
    folder.write("disk/" + name, std::string(bytes, 'x'));
    engines.stage.audio[disk(name)] = blocks;
    engines.stage.data[disk(name)] = blocks;
  }

  void search(std::function<void(frmSearch&)> script) {
    desk.expectForm<frmSearch>("frmSearch", std::move(script));
    click("Search");
  }
  /// Presses the button that starts, and answers the box that comes at the end.
  void run(frmSearch& form) {
    desk.expectBox("Found Audio Files", BoxAnswer::Ok);
    form.cmdStart.click();
  }
  /// Opens the window, presses the button that starts, and closes it; what was found.
  std::string found(int choice = 0) {
    std::string names;
    search([&](frmSearch& form) {
      form.Combo1.choose(choice);
      run(form);
      for (int row = 1; row <= form.ListView1.Count(); ++row) names += form.ListView1.Item(row).Text + ";";
      form.cmdCancel.click();
    });
    return names;
  }

  SearchForms& forms() { return program().forms().search; }
};

/// The names in the list, each with a semicolon behind it.
inline std::string namesOf(const frmSearch& form) {
  std::string names;
  for (int row = 1; row <= form.ListView1.Count(); ++row) names += form.ListView1.Item(row).Text + ";";
  return names;
}

}  // namespace trackloom::fakes
