#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct LayoutForms;

/// Asks for the order in which an unsorted MP3 layout is printed. Only its Cancel stops the printing, its close box
/// does not.
class frmChooseSort final : public Form {
 public:
  frmChooseSort(Session& session, LayoutForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "MP3 Layout Sorting"};
  Label Label2{
      *this, "Label2",
      "You have MP3 layout sorting set to the No Sorting option.  For printing purposes, you will need to sort "
      "the current track listing in order to ensure the printing order is the same as your MP3 player "
      "playback order.  Choose a sort order below for printing."};
  OptionGroup orders;
  OptionButton optName{*this, orders, "optName", "Sort current tracks by track name"};
  OptionButton optFolder{*this, orders, "optFolder", "Sort current tracks by folder name"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};

 private:
  void Load() override;
  void cmdOK_Click();
  void cmdCancel_Click();

  Session& session_;
};

}  // namespace trackloom
