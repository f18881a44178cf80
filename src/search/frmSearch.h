#pragma once

#include <string>
#include <vector>

#include "controls/Button.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"

namespace trackloom {

class Batch;
struct Session;
struct SearchForms;

/// Searches the hard drives for audio files, and adds the checked ones to the open layout. While it searches, the
/// caption of cmdStart says so, and nothing but that button ends the search.
class frmSearch final : public Form {
 public:
  frmSearch(Session& session, SearchForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Search your Computer for Audio Files"};
  ComboBox Combo1{*this, "Combo1"};
  Button cmdStart{*this, "cmdStart", "&Start Search Now"};
  ListView ListView1{
      *this,
      "ListView1",
      {{"Name", "Name", 3600}, {"Type", "Type", 900}, {"Size", "Size", 1400, true}, {"Path", "Path", 5400}},
      {.checkBoxes = true}};
  Button cmdCheckAll{*this, "cmdCheckAll", "Check All"};
  Button cmdClearAll{*this, "cmdClearAll", "Clear All"};
  Button cmdOK{*this, "cmdOK", "&Add Checked"};
  Button cmdCancel{*this, "cmdCancel", "&Close"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

  /// The roots of the drives that are searched, as they were when the window was opened.
  std::vector<std::string> HardDrives;

 private:
  void Load() override;
  bool QueryUnload(CloseReason reason) override { return reason == CloseReason::Program || !searching(); }
  void findHardDrives();
  bool searching() const;
  void cmdStart_Click();
  void beginSearch();
  void searchDrives();
  void tellResult();
  /// The buttons that lead out of the window, and the choice of the file type.
  void allowLeaving(bool allowed);
  void allowAdding(bool allowed);
  void checkAll(bool checked);
  void cmdOK_Click();
  /// True: the whole list was gone through, false: the layout was full.
  bool addChecked(const Batch& batch);

  Session& session_;
  SearchForms& forms_;
};

}  // namespace trackloom
