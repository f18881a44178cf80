#pragma once

#include "controls/Button.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/ImageList.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/TextBox.h"

namespace trackloom {

struct Session;
struct PrintingForms;

/// Shows the tracks that were read for printing, and takes the settings of the page. An MP3 layout has no insert.
class frmPrintList final : public Form {
 public:
  frmPrintList(Session& session, PrintingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Print Current Layout Track Listing"};
  Frame Frame1{*this, "Frame1", "ID3 Tag Information"};
  ListView ListView1{*this, "ListView1", {{"#", "#", 1050}, {"Artist", "Artist", 3000}, {"Title", "Title", 3600}}};
  Button cmdEdit{*this, "cmdEdit", "&Edit Selected Track"};
  Frame Frame2{*this, "Frame2", "Print Properties"};
  OptionGroup styles;
  OptionButton optStandard{*this, styles, "optStandard", "Standard Print Formatting (8 1/2 x 11 Standard Page)"};
  OptionButton optAudio{*this, styles, "optAudio", "Audio CD Print Formatting (Case Insert (Back Tray) Template)"};
  Label Label2{*this, "Label2", "Print Title:"};
  TextBox txtTitle{*this, "txtTitle", "", 50};
  Label Label3{*this, "Label3", "Header Color:"};
  ComboBox ImageCombo1{*this, "ImageCombo1"};
  ImageList ImageList1{*this, "ImageList1", {"Red", "Green", "Yellow", "Blue", "Magenta", "Cyan", "White"}};
  Label Label4{*this, "Label4", "Listing Font:"};
  ComboBox Combo1{*this, "Combo1"};
  Label Label5{*this, "Label5", "Size:"};
  ComboBox Combo2{*this, "Combo2"};
  Button cmdPrint{*this, "cmdPrint", "&Print"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;
  void Activate() override;
  void Unload() override;
  void offerStyles();
  void suggestTitle();
  void offerColours();
  void offerFonts();
  void editSelected();
  void cmdPrint_Click();

  Session& session_;
  PrintingForms& forms_;
  bool HintShown = false;
};

}  // namespace trackloom
