#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "controls/TextBox.h"

namespace trackloom {

struct Session;
struct PrintingForms;

/// Corrects artist and title of the selected row of frmPrintList, for the page alone.
class frmEdit final : public Form {
 public:
  frmEdit(Session& session, PrintingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Artist:"};
  TextBox txtArtist{*this, "txtArtist"};
  Label Label2{*this, "Label2", "Title:"};
  TextBox txtTitle{*this, "txtTitle"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

  /// What the boxes hold before the user edits them.
  void suggest(const std::string& artist, const std::string& title);

 private:
  void Load() override;
  void text_Change();
  void cmdOK_Click();

  Session& session_;
  PrintingForms& forms_;
};

}  // namespace trackloom
