#pragma once

#include "controls/Form.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;

/// Holds the picture of every dialog and is never shown.
class frmImages final : public Form {
 public:
  explicit frmImages(Session& session);

  PictureBox imgAbout{*this, "imgAbout", "About"};
  PictureBox imgDefaultOptions{*this, "imgDefaultOptions", "DefaultOptions"};
  PictureBox imgDiskInfo{*this, "imgDiskInfo", "DiskInfo"};
  PictureBox imgDone{*this, "imgDone", "Done"};
  PictureBox imgErase{*this, "imgErase", "Erase"};
  PictureBox imgError{*this, "imgError", "Error"};
  PictureBox imgFiles{*this, "imgFiles", "Files"};
  PictureBox imgFolder{*this, "imgFolder", "Folder"};
  PictureBox imgISO{*this, "imgISO", "ISO"};
  PictureBox imgMissing{*this, "imgMissing", "Missing"};
  PictureBox imgNewLayout{*this, "imgNewLayout", "NewLayout"};
  PictureBox imgNoDrive{*this, "imgNoDrive", "NoDrive"};
  PictureBox imgOpenLayout{*this, "imgOpenLayout", "OpenLayout"};
  PictureBox imgOptions{*this, "imgOptions", "Options"};
  PictureBox imgPrint{*this, "imgPrint", "Print"};
  PictureBox imgReading{*this, "imgReading", "Reading"};
  PictureBox imgRipOptions{*this, "imgRipOptions", "RipOptions"};
  PictureBox imgRipper{*this, "imgRipper", "Ripper"};
  PictureBox imgSave{*this, "imgSave", "Save"};
  PictureBox imgSearch{*this, "imgSearch", "Search"};
  PictureBox imgSort{*this, "imgSort", "Sort"};
  PictureBox imgStatus{*this, "imgStatus", "Status"};
  PictureBox imgTags{*this, "imgTags", "Tags"};
};

/// What a dialog does in its Load: copies its picture out of frmImages and unloads that form at once, so that no
/// picture is held twice.
void takePicture(Session& session, PictureBox frmImages::*picture, PictureBox& target);

}  // namespace trackloom
