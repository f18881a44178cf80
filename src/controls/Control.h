#pragma once

#include <functional>
#include <string>

#include "controls/Property.h"
#include "controls/Signal.h"

namespace trackloom {

class ControlVisitor;
class Form;

/// What every part of a form has: a name that its face is found by, and two states. Plain state: it knows no window.
/// A control lives as long as its form and joins it when it is constructed.
class Control {
 public:
  Control(Form& form, std::string name);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& name() const { return name_; }
  Form& form() const { return form_; }
  virtual void accept(ControlVisitor& visitor) = 0;

  /// Any property has changed: the face reads them all anew.
  Signal<> changed;
  Signal<> focusRequested;

  Property<bool> Enabled{changed, true};
  Property<bool> Visible{changed, true};

  void SetFocus() { focusRequested(); }
  /// Paints the control at once, without letting other events run.
  void Refresh();

 protected:
  /// A user can reach the control.
  bool usable() const;
  /// Runs a handler of the form, which stays alive until the handler returns even when the handler unloads it.
  void raise(const std::function<void()>& handler) const;

 private:
  Form& form_;
  std::string name_;
};

}  // namespace trackloom
