#pragma once

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"
#include "controls/VScrollBar.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Takes the settings of a recording: what kind of pass, how fast, how often, and what becomes of the disc.
class frmOptions final : public Form {
 public:
  frmOptions(Session& session, WritingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Select CD Creation Options"};
  TabStrip TS1{*this, "TS1", {"Write Options", "Session Options"}};

  PictureBox Pic2{*this, "Pic2"};
  Frame Frame1{*this, "Frame1", "CD Creation Type"};
  OptionGroup creationTypes;
  OptionButton optTestOnly{*this, creationTypes, "optTestOnly", "Test Write Only"};
  OptionButton optTestWrite{*this, creationTypes, "optTestWrite", "Test Write && Create CD"};
  OptionButton optCreateOnly{*this, creationTypes, "optCreateOnly", "Create CD (No Test)"};
  Label Label2{*this, "Label2", "Write Speed:"};
  ComboBox cboWriteSpeed{*this, "cboWriteSpeed"};
  Label lblVolume{*this, "lblVolume", "MP3 Style CD Volume Label:"};
  TextBox txtVolume{*this, "txtVolume", "New MP3 CD", 31};
  Label Label3{*this, "Label3", "Number of Copies:"};
  TextBox txtCopies{*this, "txtCopies", "1"};
  VScrollBar VScroll1{*this, "VScroll1", 1, 20};

  PictureBox Pic1{*this, "Pic1"};
  OptionGroup closeModes;
  OptionButton optTrack{*this, closeModes, "optTrack",
                        "Track-at-Once (Audio CD's Only - Will not work with some drives)"};
  Label lblTrack{*this, "lblTrack",
                 "Select this option if you want to add more audio tracks at a later time to an audio CD.  When you "
                 "want to listen to the audio CD, choose the CD Information option on the Tools Menu and choose Close "
                 "Disc."};
  OptionButton optClose{*this, closeModes, "optClose", "Close Disc"};
  Label lblClose{*this, "lblClose",
                 "This option will close the disc.  No further data will be able to be added to this disc."};
  OptionButton optLeaveOpen{*this, closeModes, "optLeaveOpen", "Close Session && Leave Disc Open (MP3 CD's Only)"};
  Label lblLeaveOpen{*this, "lblLeaveOpen",
                     "Select this option if you want to close this session, but leave the disc open so more files can "
                     "be added at a later time."};
  Frame Frame2{*this, "Frame2", "Caching"};
  CheckBox chkCache{*this, "chkCache", "Cache Audio/Data Track Information During Creation"};

  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

  /// Fills `cboWriteSpeed` anew with the drive's speeds, of which the highest is chosen.
  void FillWriteSpeeds();

 private:
  void Load() override;
  void showTab();
  void cmdOK_Click();
  void takeCloseMode();
  void takeCache();
  void takeTestMode();

  Session& session_;
};

}  // namespace trackloom
