#pragma once

#include <string>

#include "controls/Control.h"
#include "ports/FileDialogs.h"

namespace trackloom {

/// A form's dialog for choosing a file. It has no face: where it is shown, the platform's own dialog comes.
class CommonDialog final : public Control {
 public:
  CommonDialog(Form& form, std::string name, FileDialogs& dialogs);
  void accept(ControlVisitor& /*visitor*/) override {}

  /// What is offered and, after a choice, what was chosen; a cancelled dialog leaves it as it was.
  std::string FileName;
  std::string Filter;
  FileDialogFlags Flags;

  void ShowOpen() { show(FileDialog::Mode::Open); }
  void ShowSave() { show(FileDialog::Mode::Save); }

 private:
  void show(FileDialog::Mode mode);

  FileDialogs& dialogs_;
};

}  // namespace trackloom
