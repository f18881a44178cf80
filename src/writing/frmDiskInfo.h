#pragma once

#include <string>

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/ImageList.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"
#include "controls/Timer.h"
#include "writing/Blink.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Tells about the disc in the drive, and closes a last session that is incomplete, or the whole disc with it. While
/// the drive closes it the user cannot leave.
class frmDiskInfo final : public Form {
 public:
  frmDiskInfo(Session& session, WritingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Inserted Disc Information"};
  ListView ListView1{*this, "ListView1", {{"Item", "", 3300}, {"Value", "", 3300}}};
  ImageList ImageList1{*this, "ImageList1", {"Disk Info", "Disk Read"}};
  Button cmdCloseSession{*this, "cmdCloseSession", "&Close Last Incomplete Session"};
  Button cmdCloseDisc{*this, "cmdCloseDisc", "C&lose Disc"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};
  PictureBox imgStatus{*this, "imgStatus", "Status"};
  Label lblStatus{*this, "lblStatus", ""};
  Timer Timer1{*this, "Timer1", BlinkTime};

 private:
  void Load() override;
  bool QueryUnload(CloseReason reason) override { return reason == CloseReason::Program || !closing_; }
  void addRow(const std::string& item, const std::string& value);
  std::string freeSpace();
  void cmdCloseSession_Click();
  void cmdCloseDisc_Click();
  void beginClosing(const std::string& words);
  void tellFailure(const std::string& words);

  Session& session_;
  bool closing_ = false;
};

}  // namespace trackloom
