#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/ImageList.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/PictureBox.h"
#include "controls/StatusBar.h"
#include "ports/CDRipperX.h"
#include "ports/DiscDatabase.h"
#include "ports/MP3EncoderX.h"

namespace trackloom {

class RuntimeError;
struct Session;
struct RipperForms;

/// The ripper's own main window: it stands in for the program's, which comes back when this one is unloaded. Its list
/// has the audio tracks of the disc that was read last; a row's place alone says which track is ripped.
class frmRipMain final : public Form {
 public:
  frmRipMain(Session& session, RipperForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label3{*this, "Label3", "Trackloom CD Ripper for Ripping Audio Tracks"};
  Frame Frame2{*this, "Frame2", "Drive Selection"};
  Label Label1{*this, "Label1", "Drive Choice"};
  ComboBox ImageCombo1{*this, "ImageCombo1"};
  ImageList ImageList1{*this, "ImageList1", {"Drive"}};
  Label Label2{*this, "Label2", "Drive Speed"};
  ComboBox cboSpeeds{*this, "cboSpeeds"};
  Button cmdRead{*this, "cmdRead", "&Read Drive"};
  CheckBox chkCDDB{*this, "chkCDDB", "Enable CDDB Online Database Lookup"};
  Frame Frame3{*this, "Frame3", "Contents of Selected Drive Disc"};
  ListView ListView2{*this,
                     "ListView2",
                     {{"Track Name", "Track Name", 4800},
                      {"Track Start", "Track Start", 1500},
                      {"Track End", "Track End", 1500},
                      {"Track Length", "Track Length", 1500}},
                     {.checkBoxes = true, .editable = true}};
  Button cmdSelectAll{*this, "cmdSelectAll", "Select &All"};
  Button cmdSelectNone{*this, "cmdSelectNone", "Select &None"};
  Button cmdExtract{*this, "cmdExtract", "&Extract Selected Tracks"};
  Button cmdExit{*this, "cmdExit", "&Close"};
  Button cmdHelp{*this, "cmdHelp", "&Help"};
  StatusBar StatusBar1{*this, "StatusBar1"};

  /// Outlives the engine, which may hold its inner object.
  const std::unique_ptr<MP3EncoderX> MP31;
  const std::unique_ptr<CDRipperX> CDRipperX1;

 private:
  using Names = std::vector<std::string>;

  void Load() override;
  /// While a disc is read the window has no way out.
  bool QueryUnload(CloseReason reason) override { return reason == CloseReason::Program || cmdExit.Enabled; }
  void Unload() override;
  void listDrives();
  void FillSpeedList();

  void ReadDisc();
  void tellNoDisc();
  void tellFailure(const RuntimeError& error);
  void readDrive(std::int16_t drive);
  void readContents();
  /// The names of all tracks of the disc, data tracks too; none where nobody knows them.
  Names lookUpNames();
  std::vector<DiscRecord> askDatabase();
  DiscDatabase& database();
  Names takeNames(const DiscRecord& disc);
  void listTracks(const Names& names);

  void checkAll(bool checked);
  void allowExtraction();
  void ExtractSelected();

  Session& session_;
  RipperForms& forms_;
  std::unique_ptr<DiscDatabase> m_objCDDB;
  Mp3Stream* m_objEncoder = nullptr;
};

}  // namespace trackloom
