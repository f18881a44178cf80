#include "model/CommonDialog.h"

#include <utility>

namespace trackloom {

CommonDialog::CommonDialog(Form& form, std::string name, FileDialogs& dialogs)
    : Control(form, std::move(name)), dialogs_(dialogs) {}

void CommonDialog::show(FileDialog::Mode mode) {
  if (const auto chosen = dialogs_.choose({mode, FileName, Filter, Flags})) FileName = chosen->text;
}

}  // namespace trackloom
