#pragma once

#include <string>

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"

namespace trackloom {

struct Session;
struct LayoutForms;

/// Lists the saved layouts, for opening and deleting. A layout must be listed before either can be done.
class frmOpenLayout final : public Form {
 public:
  frmOpenLayout(Session& session, LayoutForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Open a Saved CD Layout"};
  ListView ListView1{*this,
                     "ListView1",
                     {{"Layout Name", "Layout Name", 3600},
                      {"Tracks", "Tracks", 1200},
                      {"Time/Size", "Time/Size", 1600},
                      {"Layout Style", "Layout Style", 1600}}};
  Button cmdOK{*this, "cmdOK", "&Open"};
  Button cmdDelete{*this, "cmdDelete", "&Delete"};
  Button cmdCancel{*this, "cmdCancel", "&Close"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;
  void listLayouts();
  void addRow(const std::string& fileName);
  /// With rows the first one is selected and can be opened or deleted, without any there is nothing to do.
  void offerRows();
  void cmdOK_Click();
  void cmdDelete_Click();

  Session& session_;
};

}  // namespace trackloom
