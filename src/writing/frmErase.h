#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/Timer.h"
#include "writing/Blink.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Erases the rewritable disc in the drive, the short way or the long way.
class frmErase final : public Form {
 public:
  frmErase(Session& session, WritingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Erase Rewritable Disc"};
  Frame Frame1{*this, "Frame1", "Erase Type"};
  OptionGroup eraseTypes;
  OptionButton optQuick{*this, eraseTypes, "optQuick", "Quick Erase Operation"};
  OptionButton optFull{*this, eraseTypes, "optFull", "Full Erase Operation"};
  Label lblStatus{*this, "lblStatus", ""};
  PictureBox imgStatus{*this, "imgStatus", "Status"};
  Timer Timer1{*this, "Timer1", BlinkTime};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;

  Session& session_;
};

}  // namespace trackloom
