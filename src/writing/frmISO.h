#pragma once

#include <cstdint>
#include <memory>

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"
#include "controls/TextBox.h"
#include "model/CommonDialog.h"
#include "ports/CDWriterXP.h"

namespace trackloom {

struct Session;
struct WritingForms;

/// Makes an image file of the open MP3 layout, with an engine of its own. The file is chosen by browsing alone. A run
/// goes on to its last word behind every failure, also when the dialog has gone.
class frmISO final : public Form, private CDWriterEvents {
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
  CommonDialog CD1;
  std::unique_ptr<CDWriterXP> CDR1;

 private:
  void Load() override;
  void cmdBrowse_Click();
  void cmdOK_Click();
  void cmdCancel_Click();
  void CheckImageTracks();
  void BuildImage();

  void OnTrackCacheStart(std::int16_t track, std::int32_t blocks) override;
  void OnCacheProgress(std::int32_t position) override;
  void OnImageTrackStart(std::int32_t track) override;
  void OnWriteError(std::int32_t code, std::int32_t deviceError) override;

  Session& session_;
};

}  // namespace trackloom
