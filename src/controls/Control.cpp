#include "controls/Control.h"

#include <utility>

#include "controls/Form.h"

namespace trackloom {

Control::Control(Form& form, std::string name) : form_(form), name_(std::move(name)) {
  form.join(*this);
}

void Control::Refresh() {
  form_.host().repaint(*this);
}

bool Control::usable() const {
  return Enabled && Visible && form_.takesInput();
}

void Control::raise(const std::function<void()>& handler) const {
  if (!handler) return;
  const auto alive = form_.keepAlive();
  handler();
}

}  // namespace trackloom
