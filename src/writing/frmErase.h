#pragma once

#include <string>

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

/// Erases the rewritable disc in the drive, the short way or the long way, without a further question. While the drive
/// erases the user cannot leave.
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

  /// The drive has really begun.
  void showErasing();

 private:
  void Load() override;
  bool QueryUnload(CloseReason reason) override { return reason == CloseReason::Program || !erasing_; }
  void cmdOK_Click();
  bool discCanBeErased();
  void beginErasing();
  void say(const std::string& words);

  Session& session_;
  bool erasing_ = false;
};

}  // namespace trackloom
