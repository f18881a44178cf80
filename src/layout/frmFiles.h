#pragma once

#include <cstdint>
#include <string>

#include "controls/Button.h"
#include "controls/FolderTreeview.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"
#include "controls/StatusBar.h"
#include "ports/FolderListing.h"

namespace trackloom {

class Batch;
struct Session;
struct LayoutForms;

/// Picks audio files folder by folder, and adds the checked ones to the open layout. The rows come as the disk tells
/// them; what is there already can be checked and added, and another folder be chosen.
class frmFiles final : public Form, private FolderReader {
 public:
  frmFiles(Session& session, LayoutForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Browse for Audio Tracks to Add to your Layout"};
  FolderTreeview FT1{*this, "FT1"};
  ListView ListView1{*this,
                     "ListView1",
                     {{"File Name", "File Name", 4200}, {"File Size", "File Size", 1400, true}},
                     {.checkBoxes = true}};
  StatusBar StatusBar1{*this, "StatusBar1"};
  Button cmdCheckAll{*this, "cmdCheckAll", "Check All"};
  Button cmdClearAll{*this, "cmdClearAll", "Clear All"};
  Button cmdOK{*this, "cmdOK", "&Add Checked"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  /// What one look into a folder found; the bytes are a sum of 64 bits.
  struct Found {
    std::int64_t files = 0;
    std::int64_t bytes = 0;
  };

  void Load() override;
  void listFolder(const std::string& folder);
  void fileFound(const std::string& name) override;
  void lengthFound(std::int64_t bytes) override;
  void allFound() override;
  void listingFailed() override;
  void allowAdding(bool allowed);
  void checkAll(bool checked);
  void cmdOK_Click();
  /// True: the whole list was gone through, false: the layout was full.
  bool addChecked(const Batch& batch, const std::string& folder);

  Session& session_;
  Found found_;
  /// Before the present folder, and so after it if it fails.
  bool addingWasAllowed_ = false;
  FolderListing::Hold seeking_;
  FolderListing::Hold listing_;
};

}  // namespace trackloom
