#pragma once

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct ShellForms;

/// The user's three choices of `Options.dat`. Merely opening it replaces the whole record in memory by the file's; a
/// file that cannot be read or written is passed over.
class frmDefaultOptions final : public Form {
 public:
  frmDefaultOptions(Session& session, ShellForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Choose Default Options"};
  Frame Frame1{*this, "Frame1", "MP3 Layout Sorting"};
  ComboBox cboSort{*this, "cboSort"};
  Label Label2{
      *this, "Label2",
      "Note:  MP3 layout sorting has no effect on the order in which the tracks are burned to disc.  MP3 style "
      "CD's are always burned alphabetically."};
  CheckBox chkPrompt{*this, "chkPrompt",
                     "Prompt when created layout has not been saved before creating a new layout or when exiting"};
  CheckBox chkBack{*this, "chkBack", "Use Windows Theme Colors for Menu, Tools and Status Bar (XP or Higher Only)"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;
  void cmdOK_Click();

  Session& session_;
};

}  // namespace trackloom
