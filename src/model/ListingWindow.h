#pragma once

#include <cstdint>
#include <memory>

#include "controls/DockStudio.h"
#include "controls/Form.h"
#include "controls/ImageList.h"
#include "controls/ListView.h"
#include "controls/Timer.h"
#include "model/CommonDialog.h"
#include "ports/CDWriterXP.h"

namespace trackloom {

struct Ports;

/// The main window as all features see it: the open layout's rows, the bars, the engines, and the flags of its
/// handlers. The rows of ListView1 are the track records: Text the file name, SubItems(1) the source folder with its
/// trailing separator, SubItems(2) the time text, SubItems(3) the disc folder on MP3 layouts.
class ListingWindow : public Form {
  CDWriterEvents silent_;

 public:
  /// `writeEvents` hears CDR1 and outlives the window.
  ListingWindow(FormHost& host, Ports& ports, CDWriterEvents& writeEvents);

  DockStudio DockStudio1;
  ListView ListView1;
  CommonDialog CD1;
  /// Milliseconds between two steps of a recording, in which the drive settles.
  static constexpr int StepPause = 3000;
  /// The pause between a test that has passed and the real write.
  Timer Timer1{*this, "Timer1", StepPause};
  /// The pause between a copy and the next one.
  Timer Timer2{*this, "Timer2", StepPause};
  ImageList ImageList1{*this, "ImageList1", {"Note"}};

  /// The writer engine of all disc operations.
  std::unique_ptr<CDWriterXP> CDR1;
  /// Measures one file at a time, and never writes.
  std::unique_ptr<CDWriterXP> CDR2;

  Tool& panel1;
  Tool& panel2;
  Tool& panel3;
  Tool& Progress1;
  Tool& cboMainDrive;

  /// True from the end of the placement until the first activation.
  bool Loading = false;
  /// True only in a second instance that is closing itself.
  bool ClosingDuplicate = false;
  std::int16_t TotalTracks = 0;
  std::int32_t TrackBlocks = 0;
  std::int16_t QueueIndexOfSelection = 0;
  /// The row that is dragged and the one under the pointer; 0 when idle.
  std::int16_t DragRow = 0;
  std::int16_t HoverRow = 0;
};

}  // namespace trackloom
