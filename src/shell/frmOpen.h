#pragma once

#include "controls/Form.h"
#include "controls/PictureBox.h"
#include "controls/Timer.h"

namespace trackloom {

struct Session;

/// The splash: stands for one second, and while it still stands the main window loads.
class frmOpen final : public Form {
 public:
  explicit frmOpen(Session& session);

  PictureBox Picture1{*this, "Picture1"};
  Timer Timer1{*this, "Timer1", 1000};

 private:
  void Load() override;
  void Timer1_Tick();

  Session& session_;
};

}  // namespace trackloom
