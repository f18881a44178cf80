#pragma once

#include "controls/Control.h"

namespace trackloom {

/// Ticks every `interval` milliseconds while it is enabled, as long as its form is loaded. A tick never comes inside
/// the handler of another tick, so a handler may show boxes before it disables its timer. Designed disabled.
class Timer final : public Control {
 public:
  Timer(Form& form, std::string name, int interval);
  void accept(ControlVisitor& visitor) override;

  int interval() const { return interval_; }

  std::function<void()> Tick;
  void tick();

  /// From now on ticks wait; release() makes up for those that came, by one, if the timer is still enabled.
  void hold() { held_ = true; }
  void release();

 private:
  int interval_;
  bool ticking_ = false;
  bool held_ = false;
  bool due_ = false;
};

}  // namespace trackloom
