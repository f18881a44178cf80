#pragma once

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct ShellForms;

/// Tells that there is no usable drive. However it is unloaded, the process ends, with nothing saved.
class frmNOCD final : public Form {
 public:
  frmNOCD(Session& session, ShellForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "No CD Recording Drives Found"};
  Label Label2{*this, "Label2",
               "Trackloom was unable to locate any CD recording drives on your system.  This could be due to no drives "
               "being present or problems with ASPI drivers on your system."};
  Label Label3{*this, "Label3",
               "If you do indeed have a CD recording drive installed on your system, please contact your drive "
               "manufacturer for the required ASPI drivers.  Trackloom will now shut down."};
  Label Label4{*this, "Label4",
               "Note:  This screen can also appear if the disc currently inserted in your drive is not yet ready for "
               "reading.  Please ensure the drive light has stopped blinking."};
  Button cmdOK{*this, "cmdOK", "&OK"};

 private:
  void Load() override;
  void Unload() override;

  Session& session_;
};

}  // namespace trackloom
