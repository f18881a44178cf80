#include "controls/Timer.h"

#include <utility>

#include "controls/ControlVisitor.h"
#include "controls/Form.h"

namespace trackloom {

Timer::Timer(Form& form, std::string name, int interval) : Control(form, std::move(name)), interval_(interval) {
  Enabled = false;
}

void Timer::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void Timer::tick() {
  if (!Enabled || ticking_) return;
  if (held_) {
    due_ = true;
    return;
  }
  const auto alive = form().keepAlive();
  struct Guard {
    bool& flag;
    explicit Guard(bool& f) : flag(f) { flag = true; }
    ~Guard() { flag = false; }
  } guard(ticking_);
  raise(Tick);
}

void Timer::release() {
  held_ = false;
  if (std::exchange(due_, false)) tick();
}

}  // namespace trackloom
