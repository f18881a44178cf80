#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "controls/Form.h"

namespace trackloom {

/// Holds the one instance of a form: made and loaded at first touch, dropped when it is unloaded. Whoever runs a
/// handler of a dropped form still holds it, so the form goes only when no handler of it is on the stack.
template <class T>
class FormSlot {
 public:
  /// The form is made of `parts`, which outlive the slot.
  template <class... Parts>
  explicit FormSlot(Parts&... parts) : make_([&parts...] { return std::make_shared<T>(parts...); }) {}
  FormSlot(const FormSlot&) = delete;
  FormSlot& operator=(const FormSlot&) = delete;

  /// A form that unloads itself in its Load can be read until the next touch.
  T& get() {
    if (form_) return *form_;
    const std::shared_ptr<T> form = form_ = make_();
    form->onUnloaded = [this] { form_.reset(); };
    form->load();
    // A form that unloaded itself in its own Load must outlive the caller's look at it.
    if (!form_) stillborn_ = form;
    return *form;
  }
  T* operator->() { return &get(); }

  bool exists() const { return form_ != nullptr; }

  /// Touches nothing when there is no instance.
  void unload() {
    if (const auto form = form_) form->unload();
  }

 private:
  std::function<std::shared_ptr<T>()> make_;
  std::shared_ptr<T> form_;
  std::shared_ptr<T> stillborn_;
};

}  // namespace trackloom
