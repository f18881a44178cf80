#include "controls/Form.h"

#include <utility>

namespace trackloom {

Form::Form(FormHost& host, std::string name, std::string designedCaption)
    : caption(changed, std::move(designedCaption)), host_(host), name_(std::move(name)) {}

/// A modal form's hold on its owner.
class Form::Cover {
 public:
  explicit Cover(Form* owner) : owner_(owner), alive_(owner == nullptr ? nullptr : owner->keepAlive()) {
    if (owner_ != nullptr) ++owner_->modals_;
  }
  ~Cover() {
    if (owner_ != nullptr) --owner_->modals_;
  }
  Cover(const Cover&) = delete;
  Cover& operator=(const Cover&) = delete;

 private:
  Form* owner_;
  std::shared_ptr<Form> alive_;
};

void Form::load() {
  if (loaded_) return;
  loaded_ = true;
  Load();
}

void Form::show() {
  load();
  if (unloaded_) return;
  visible_ = true;
  host_.show(*this);
}

void Form::showModal(Form* owner) {
  const auto alive = keepAlive();
  load();
  if (unloaded_) return;
  visible_ = true;
  const Cover cover(owner);
  host_.showModal(*this, owner);
}

void Form::hide() {
  if (!visible_) return;
  visible_ = false;
  host_.hide(*this);
}

bool Form::unload(CloseReason reason) {
  if (unloaded_) return true;
  const auto alive = keepAlive();
  if (!QueryUnload(reason)) return false;
  if (unloaded_) return true;
  unloaded_ = true;
  Unload();
  visible_ = false;
  host_.discard(*this);
  if (onUnloaded) std::exchange(onUnloaded, {})();
  return true;
}

void Form::closeBox() {
  if (takesInput()) unload(CloseReason::User);
}

void Form::activated() {
  const auto alive = keepAlive();
  if (!unloaded_) Activate();
}

}  // namespace trackloom
