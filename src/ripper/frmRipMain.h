#pragma once

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"
#include "controls/StatusBar.h"

namespace trackloom {

struct Session;
struct RipperForms;

/// The ripper's own main window: it stands in for the program's, which comes back when this one is unloaded.
class frmRipMain final : public Form {
 public:
  frmRipMain(Session& session, RipperForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label3{*this, "Label3", "Trackloom CD Ripper for Ripping Audio Tracks"};
  Frame Frame2{*this, "Frame2", "Drive Selection"};
  Label Label1{*this, "Label1", "Drive Choice"};
  ComboBox ImageCombo1{*this, "ImageCombo1"};
  Label Label2{*this, "Label2", "Drive Speed"};
  ComboBox cboSpeeds{*this, "cboSpeeds"};
  Button cmdRead{*this, "cmdRead", "&Read Drive"};
  CheckBox chkCDDB{*this, "chkCDDB", "Enable CDDB Online Database Lookup"};
  Frame Frame3{*this, "Frame3", "Contents of Selected Drive Disc"};
  ListView ListView2{*this,
                     "ListView2",
                     {{"Track Name", "Track Name", 4800},
                      {"Track Start", "Track Start", 1500},
                      {"Track End", "Track End", 1500},
                      {"Track Length", "Track Length", 1500}},
                     {.checkBoxes = true}};
  Button cmdSelectAll{*this, "cmdSelectAll", "Select &All"};
  Button cmdSelectNone{*this, "cmdSelectNone", "Select &None"};
  Button cmdExtract{*this, "cmdExtract", "&Extract Selected Tracks"};
  Button cmdExit{*this, "cmdExit", "&Close"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};
  StatusBar StatusBar1{*this, "StatusBar1"};

 private:
  void Load() override;
  void Unload() override;

  Session& session_;
};

}  // namespace trackloom
