#pragma once

#include <QtTest/QTest>
#include <memory>
#include <string>
#include <vector>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/FolderTreeview.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"
#include "controls/StatusBar.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"
#include "controls/Timer.h"
#include "controls/VScrollBar.h"
#include "desktop/QtDesk.h"

namespace trackloom::trial {

/// A form with a control of each kind. It notes what its handlers heard.
class TrialForm : public Form {
 public:
  explicit TrialForm(FormHost& host);

  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  CheckBox chkTick{*this, "chkTick", "Tick && tack"};
  OptionGroup group;
  OptionButton optFirst{*this, group, "optFirst", "First"};
  OptionButton optSecond{*this, group, "optSecond", "Second"};
  ComboBox cboPick{*this, "cboPick"};
  TextBox txtName{*this, "txtName", "", 5};
  Label lblText{*this, "lblText", "One && two &three"};
  Frame Frame1{*this, "Frame1", "A frame"};
  PictureBox Image1{*this, "Image1"};
  ProgressBarEx pbDone{*this, "pbDone"};
  StatusBar StatusBar1{*this, "StatusBar1", 2};
  TabStrip TS1{*this, "TS1", {"One", "Two"}};
  VScrollBar VScroll1{*this, "VScroll1", 1, 20};
  FolderTreeview FT1{*this, "FT1"};
  ListView List1{*this, "List1", {{"a", "A", 1500}, {"b", "B", 3000, true}}, {.checkBoxes = true}};
  Timer Timer1{*this, "Timer1", 1};

  std::vector<std::string> heard;
  bool refuseClose = false;

 protected:
  bool QueryUnload(CloseReason reason) override;
  void Unload() override { heard.push_back("Unload"); }
  void Activate() override { heard.push_back("Activate"); }
};

/// The designs of the trial form: "frmTrial" as it should be, and ones with a fault each.
const std::vector<FaceDesign>& trialDesigns();

/// The trial form shown on a desk of its own.
struct Shown {
  Shown();
  ~Shown();
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;

  QtDesk desk;
  std::shared_ptr<TrialForm> form;

  template <class Widget>
  Widget& widget(const char* name) {
    return *desk.window(*form)->findChild<Widget*>(name);
  }
  void press(Qt::Key key) { QTest::keyClick(desk.window(*form), key); }
};

/// Runs the event loop until the condition holds, for two seconds at most; whether it does.
template <class Condition>
bool comesTrue(Condition condition) {
  return QTest::qWaitFor(condition, 2000);
}

}  // namespace trackloom::trial
