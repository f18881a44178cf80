#pragma once

#include "controls/Form.h"
#include "controls/PictureBox.h"
#include "controls/Timer.h"

namespace trackloom {

struct Session;
struct ShellForms;

/// The splash: stands for one second, and while it still stands the main window loads.
class frmOpen final : public Form {
 public:
  frmOpen(Session& session, ShellForms& forms);

  PictureBox Picture1{*this, "Picture1", "splash"};
  /// Milliseconds that the splash stands.
  static constexpr int SplashTime = 1000;
  Timer Timer1{*this, "Timer1", SplashTime};

 private:
  void Load() override;
  /// Only its timer ends it: without it the main window would never come, and the process would have no window.
  bool QueryUnload(CloseReason reason) override { return reason == CloseReason::Program; }
  void Timer1_Tick();

  Session& session_;
};

}  // namespace trackloom
