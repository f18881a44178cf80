#pragma once

#include "controls/Button.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct SearchForms;

/// Searches the hard drives for audio files, and adds the checked ones to the open layout.
class frmSearch final : public Form {
 public:
  frmSearch(Session& session, SearchForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Search your Computer for Audio Files"};
  ComboBox Combo1{*this, "Combo1"};
  Button cmdStart{*this, "cmdStart", "&Start Search Now"};
  ListView ListView1{
      *this,
      "ListView1",
      {{"Name", "Name", 3600}, {"Type", "Type", 900}, {"Size", "Size", 1400, true}, {"Path", "Path", 5400}},
      {.checkBoxes = true}};
  Button cmdCheckAll{*this, "cmdCheckAll", "Check All"};
  Button cmdClearAll{*this, "cmdClearAll", "Clear All"};
  Button cmdOK{*this, "cmdOK", "&Add Checked"};
  Button cmdCancel{*this, "cmdCancel", "&Close"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;

  Session& session_;
};

}  // namespace trackloom
