#pragma once

#include <memory>

#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "ports/CDWriterXP.h"

namespace trackloom {

class clsMP3Info;
struct Session;
struct PrintingForms;

/// Stands while the tracks are read for printing, and goes by itself when nothing is left to read. What it finds goes
/// into the list of frmPrintList and into `TrackTimes`.
class frmReadStatus final : public Form {
 public:
  frmReadStatus(Session& session, PrintingForms& forms);

  PictureBox Image1{*this, "Image1"};
  Label Label1{*this, "Label1", ""};

 private:
  void Load() override;
  void Activate() override;
  void readTracks();
  void readTrack(int number, clsMP3Info& info);
  std::string playTime(const HostPath& track);

  Session& session_;
  PrintingForms& forms_;
  CDWriterEvents silent_;
  /// Measures one file at a time, and never writes.
  std::unique_ptr<CDWriterXP> CDR2;
  bool ReadDone = false;
};

}  // namespace trackloom
