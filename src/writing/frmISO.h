#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"
#include "controls/TextBox.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Makes an image file of the open MP3 layout. The file is chosen by browsing alone.
class frmISO final : public Form {
 public:
  frmISO(Session& session, WritingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Create MP3 CD ISO Image"};
  Frame Frame1{*this, "Frame1", "Image Location, Name && Label"};
  Label Label2{*this, "Label2", "Choose Location"};
  TextBox txtImage{*this, "txtImage"};
  Button cmdBrowse{*this, "cmdBrowse", "&Browse"};
  Label Label3{*this, "Label3", "Volume Label:"};
  TextBox txtLabel{*this, "txtLabel", "", 31};
  Frame Frame2{*this, "Frame2", "Image Creation Status"};
  Label lblFile{*this, "lblFile", ""};
  ProgressBarEx pbCache{*this, "pbCache"};
  Button cmdOK{*this, "cmdOK", "Create &Image"};
  Button cmdCancel{*this, "cmdCancel", "&Close"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;
  void cmdCancel_Click();

  Session& session_;
};

}  // namespace trackloom
