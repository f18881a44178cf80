#pragma once

#include <string>

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Shows how a write goes on. The user cannot close it, only cancel the write.
class frmStatus final : public Form {
 public:
  frmStatus(Session& session, WritingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Frame Frame1{*this, "Frame1", "Operation Details"};
  Label lblOperation{*this, "lblOperation", ""};
  Frame Frame2{*this, "Frame2", "Cache Progress"};
  ProgressBarEx pbCache{*this, "pbCache"};
  Frame Frame3{*this, "Frame3", "Write Progress"};
  ProgressBarEx pbTrack{*this, "pbTrack"};
  Label lblSpeed{*this, "lblSpeed", ""};
  Label Label1{*this, "Label1", "Overall:"};
  ProgressBarEx pbOverall{*this, "pbOverall"};
  Label Label2{*this, "Label2", "Tracks Done:"};
  Label lblTracks{*this, "lblTracks", "N/A"};
  Label Label3{*this, "Label3", "Read Buffer:"};
  Label lblBuffer{*this, "lblBuffer", "N/A"};
  Label Label4{*this, "Label4", "Write Buffer:"};
  Label lblDevice{*this, "lblDevice", "N/A"};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};

  /// Sets a label and paints it before the engine's next call can block.
  static void say(Label& label, const std::string& text);

 private:
  void Load() override;
  bool QueryUnload(CloseReason reason) override { return reason == CloseReason::Program; }
  void cmdCancel_Click();
  /// Asks. What would be written next waits for the answer, and is never written once it is OK.
  bool isToBeCancelled();

  Session& session_;
};

}  // namespace trackloom
