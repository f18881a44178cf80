#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"
#include "controls/Timer.h"
#include "writing/Blink.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Tells about the disc in the drive. Only a disc whose last session is known to be incomplete can be closed here.
class frmDiskInfo final : public Form {
 public:
  frmDiskInfo(Session& session, WritingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Inserted Disc Information"};
  ListView ListView1{*this, "ListView1", {{"Item", "", 3300}, {"Value", "", 3300}}};
  Button cmdCloseSession{*this, "cmdCloseSession", "&Close Last Incomplete Session"};
  Button cmdCloseDisc{*this, "cmdCloseDisc", "C&lose Disc"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};
  PictureBox imgStatus{*this, "imgStatus", "Status"};
  Label lblStatus{*this, "lblStatus", ""};
  Timer Timer1{*this, "Timer1", BlinkTime};

 private:
  void Load() override;

  Session& session_;
};

}  // namespace trackloom
