#pragma once

#include <string>
#include <vector>

#include "controls/Button.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"
#include "controls/TextBox.h"

namespace trackloom {

struct Session;
struct LayoutForms;

/// Names a folder of the disc for selected tracks of an MP3 layout.
class frmFolder final : public Form {
 public:
  frmFolder(Session& session, LayoutForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Define MP3 CD Folders"};
  Label Label2{*this, "Label2", "Select tracks you want to apply this folder to:"};
  ListView ListView1{*this, "ListView1", {{"Track Name", "Track Name", 5600}}, {.multiSelect = true}};
  Label Label3{*this, "Label3", "New Folder:"};
  TextBox txtFolder{*this, "txtFolder"};
  ComboBox cboFolder{*this, "cboFolder"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;
  void listFolders();
  void listTracks();
  void cmdOK_Click();
  /// Moves the track of a row of the main listing, in the row and in the engine's queue, and tells where it lay.
  std::string moveTrack(int row);
  std::string chosenFolder();
  void removeFoldersWithoutTracks(const std::vector<std::string>& folders);

  Session& session_;
};

}  // namespace trackloom
