#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "controls/Button.h"
#include "controls/Form.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"
#include "controls/StatusBar.h"
#include "ports/CDRipperX.h"
#include "runtime/Paths.h"

namespace trackloom {

struct Session;
struct RipperForms;

/// Runs one rip of the checked rows: queues them at its first activation, follows the engine's events, and tags each
/// file. Names are counted by finished tracks, so a checked row that the engine was not given shifts all later tags.
class frmRipStatus final : public Form, private CDRipperEvents {
 public:
  frmRipStatus(Session& session, RipperForms& forms);

  PictureBox Image1{*this, "Image1"};
  Frame Frame1{*this, "Frame1", "Progress"};
  Label Label1{*this, "Label1", "Current Track"};
  ProgressBarEx prgTrack{*this, "prgTrack"};
  Label Label2{*this, "Label2", "Overall Tracks"};
  ProgressBarEx prgTotal{*this, "prgTotal"};
  Label lblTime{*this, "lblTime", ""};
  Button cmdCancel{*this, "cmdCancel", "Cancel"};
  StatusBar StatusBar1{*this, "StatusBar1"};

  /// Returns when the rip has ended and the dialog is gone. The engine outlives it.
  void StartRipSession(CDRipperX& engine);

 private:
  void Load() override;
  void Activate() override;
  /// Nothing but cmdCancel ends a rip that runs.
  bool QueryUnload(CloseReason reason) override { return reason == CloseReason::Program || !RipRunning; }
  void Unload() override;
  void queueCheckedRows();
  void queueRow(std::int16_t row);
  HostPath pathOf(std::int16_t row) const;

  void RipStarted() override;
  void TrackStarted(const HostPath& path, std::int32_t first, std::int32_t last, std::int32_t callerNumber) override;
  void RipStatus(std::int32_t code, std::int32_t value) override;
  void TrackFinished() override;
  void RipFinished() override;
  void showProgress(std::int32_t sector);
  void cmdCancel_Click();

  Session& session_;
  RipperForms& forms_;
  CDRipperX* m_objRipper = nullptr;
  /// Of the checked rows, in their order.
  std::vector<std::string> TrackNames;
  std::size_t FinishedCount = 0;
  /// The row that is being queued, then that of the running track.
  std::int16_t CurrentTrack = 0;
  HostPath CurrentFile;
  std::int32_t TrackFirstSector = 0;
  std::int32_t TrackLastSector = 0;
  bool RipRunning = false;
  bool CancelRequested = false;
};

}  // namespace trackloom
