#pragma once

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct LayoutForms;

/// Asks for the kind of a new layout, and begins it.
class frmNewOption final : public Form {
 public:
  frmNewOption(Session& session, LayoutForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Select CD Layout Style"};
  OptionGroup styles;
  Label Label2{*this, "Label2", "Audio Style"};
  OptionButton optStandard{*this, styles, "optStandard",
                           "Standard Audio CD - This type of CD layout allows you to create a standard Audio CD which "
                           "will be playable in ALL CD players."};
  Label Label3{*this, "Label3", "MP3 Style"};
  OptionButton optMP3{*this, styles, "optMP3",
                      "MP3 Style CD - This type of CD layout allows you to create an MP3 style CD which will be "
                      "playable in MP3 CD players and DVD players."};
  CheckBox chkNoShow{*this, "chkNoShow", "Do not show again"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;
  void cmdOK_Click();
  void chooseKind();
  void beginLayout();

  Session& session_;
};

}  // namespace trackloom
