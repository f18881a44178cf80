#pragma once

#include <cstdint>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/TextBox.h"
#include "ports/FolderListing.h"

namespace trackloom {

struct Session;
struct RipperForms;

/// Asks before each rip where the files go, how they are named, and what they are. The folder alone is remembered, in
/// `Folder.dat`; an empty `RipFolder` behind it means that no rip is to be.
class frmRipOptions final : public Form {
 public:
  frmRipOptions(Session& session, RipperForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", "Define CD Ripping Options"};
  Label Label2{*this, "Label2", "Extraction Folder:"};
  TextBox txtFolder{*this, "txtFolder"};
  Button cmdFolder{*this, "cmdFolder", "&Browse"};
  Frame Frame2{*this, "Frame2", "Track Naming"};
  OptionGroup naming;
  OptionButton optNameList{*this, naming, "optNameList", "Name tracks as they appear in the listing"};
  OptionButton optNameListArtist{*this, naming, "optNameListArtist",
                                 "Name tracks as they appear in the listing and add artist name"};
  OptionButton optNameListAlbum{*this, naming, "optNameListAlbum",
                                "Name tracks as they appear in the listing and add album name"};
  OptionButton optNameCustom{*this, naming, "optNameCustom", "Name tracks using custom naming option below"};
  TextBox txtName{*this, "txtName", "Track", 25};
  Label Label4{*this, "Label4",
               "Text entered here will be used to name each track when the track is ripped.  For example:  Using the "
               "default value will result in track 1 being ripped as Track01.wav or Track01.mp3."};
  Frame Frame1{*this, "Frame1", "MP3 Options"};
  CheckBox chkMP3{*this, "chkMP3", "Encode extracted tracks to MP3 format"};
  Label Label5{*this, "Label5", "BitRate:"};
  ComboBox Combo1{*this, "Combo1"};
  Button cmdOK{*this, "cmdOK", "&OK"};
  Button cmdCancel{*this, "cmdCancel", "&Cancel"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};

 private:
  void Load() override;
  void takeSavedFolder();
  void optNameCustom_Click();
  void cmdFolder_Click();
  void cmdOK_Click();
  void cmdCancel_Click();
  /// Says what is missing, and leads there.
  bool answersAreWhole();
  void saveFolder();
  std::int16_t chosenNaming() const;

  Session& session_;
  RipperForms& forms_;
  /// The look at the saved folder, which may lie on a network that is slow.
  FolderListing::Hold seeking_;
};

}  // namespace trackloom
