#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "controls/TextBox.h"

namespace trackloom {

struct Session;
struct LayoutForms;

/// Asks for the name of the open layout, and saves it under that name.
class frmSave final : public Form {
 public:
  frmSave(Session& session, LayoutForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Save CD Layout"};
  Label Label2{*this, "Label2", "Layout Name:"};
  TextBox txtName{*this, "txtName"};
  Label Label3{*this, "Label3",
               "Note:  If a layout by the same name already exists, you will be prompted to overwrite the existing "
               "layout or not."};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

  /// Puts a name into the box as the program's own suggestion.
  void suggest(const std::string& name);

 private:
  void Load() override;
  void txtName_Change();
  void cmdOK_Click();
  bool nameIsAllowed();
  bool mayOverwrite(const std::string& name);

  Session& session_;
};

}  // namespace trackloom
