#pragma once

namespace trackloom {

class Control;
class Form;

/// Puts forms before the user. A form asks its host; the host never changes a form's state but through its user verbs.
class FormHost {
 public:
  virtual ~FormHost() = default;

  virtual void show(Form& form) = 0;
  /// Returns once the form is hidden or unloaded; other events run meanwhile. `owner` is the window it stands before,
  /// or null.
  virtual void showModal(Form& form, Form* owner) = 0;
  virtual void hide(Form& form) = 0;
  /// The form has been unloaded and will not be shown again.
  virtual void discard(Form& form) = 0;
  // Painting at once, without letting other events run.
  virtual void repaint(Control& control) = 0;
  virtual void repaint(Form& form) = 0;
};

}  // namespace trackloom
