#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct ShellForms;

/// Names the program, its version and its licence.
class frmAbout final : public Form {
 public:
  frmAbout(Session& session, ShellForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Trackloom"};
  Label Label2{*this, "Label2", "Version 5.0"};
  Label Label3{*this, "Label3",
               "Free software under the GNU General Public License, version 3 or later (GPL-3.0-or-later)."};
  Button cmdOK{*this, "cmdOK", "&OK"};

 private:
  void Load() override;

  Session& session_;
};

}  // namespace trackloom
