#include "desktop/QtDesk.h"

#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <chrono>

#include "controls/Control.h"
#include "controls/Form.h"
#include "desktop/Face.h"

namespace trackloom {

namespace {

constexpr std::chrono::milliseconds windowSystemsTurn{5};

void askForAttention(QWidget& window) {
  QApplication::alert(&window);
}

void runUntrapped(const std::function<void()>& event) noexcept {
  event();
}

}  // namespace

QtDesk::QtDesk(const std::vector<FaceDesign>& designs)
    : designs_(designs), trap_(runUntrapped), attention_(askForAttention) {
  QApplication::setQuitOnLastWindowClosed(false);
}

QtDesk::~QtDesk() {
  for (const auto& [form, face] : faces_) face->cut();
}

std::string QtDesk::failureDetail() const {
  return failureDetail_ == nullptr ? std::string() : failureDetail_->lastFailure();
}

void QtDesk::enter(const std::function<void()>& event) const {
  trap_(event);
}

void QtDesk::perform(std::function<void()> event) {
  if (standstills_ == 0 && held_.empty()) return enter(event);
  held_.push_back(std::move(event));
}

void QtDesk::standOn() {
  if (--standstills_ == 0) performHeldSoon();
}

void QtDesk::performHeldSoon() {
  if (!held_.empty())
    QMetaObject::invokeMethod(
        &loop_, [this] { performHeld(); }, Qt::QueuedConnection);
}

void QtDesk::performHeld() {
  if (standstills_ > 0 || held_.empty()) return;
  const auto event = std::move(held_.front());
  held_.pop_front();
  // The event may run a loop of its own, in which the others must not wait.
  performHeldSoon();
  enter(event);
}

void QtDesk::prepare(Form& form) {
  // A moment later, so that the window system has its turn between both; what is due at once comes before it.
  QTimer::singleShot(windowSystemsTurn, &faceOf(form).window(), [face = faceOf(form).weak_from_this()] {
    if (const auto ready = face.lock()) ready->prepare();
  });
}

void QtDesk::prepare(const std::string& form) {
  auto window = takeWindow(form);
  window->grab();
  window->winId();
  prepared_[form] = std::move(window);
}

std::unique_ptr<QWidget> QtDesk::takeWindow(const std::string& form) {
  if (auto ready = prepared_.extract(form)) return std::move(ready.mapped());
  const auto found = std::find_if(designs_.begin(), designs_.end(), [&](const auto& d) { return d.form == form; });
  return found == designs_.end() ? std::make_unique<QWidget>() : found->make();
}

Face& QtDesk::faceOf(Form& form) {
  auto& face = faces_[&form];
  if (!face) {
    face = Face::make(*this, form);
    extras_(form.name(), face->window());
  }
  return *face;
}

void QtDesk::show(Form& form) {
  // Some window systems keep a window above others only where it belongs to one of them.
  faceOf(form).show(form.Topmost ? frontWindow() : nullptr, Qt::NonModal);
  std::erase(shown_, &form);
  shown_.push_back(&form);
}

void QtDesk::showModal(Form& form, Form* owner) {
  const auto face = faceOf(form).shared_from_this();
  hideSplash();
  std::erase(shown_, &form);
  shown_.push_back(&form);
  QWidget* before = owner == nullptr ? nullptr : window(*owner);
  face->runModal(before != nullptr && before->isVisible() ? before : nullptr);
}

void QtDesk::hideSplash() {
  for (const auto& [form, face] : faces_)
    if (face->isSplash()) face->window().hide();
}

void QtDesk::hide(Form& form) {
  std::erase(shown_, &form);
  if (const auto found = faces_.find(&form); found != faces_.end()) found->second->hide();
}

void QtDesk::discard(Form& form) {
  std::erase(shown_, &form);
  const auto gone = faces_.extract(&form);
  if (gone.empty()) return;
  // Work that has a window of its own on the desktop is over.
  if (gone.mapped()->window().property("ownEntry").toBool()) callUser();
  gone.mapped()->cut();
}

void QtDesk::callUser() {
  if (QApplication::activeWindow() != nullptr) return;
  QTimer::singleShot(0, &loop_, [this] {
    if (QWidget* front = frontWindow()) attention_(*front);
  });
}

void QtDesk::repaint(Control& control) {
  const auto found = faces_.find(&control.form());
  if (found == faces_.end()) return;
  if (QWidget* widget = found->second->widgetOf(control)) widget->repaint();
}

void QtDesk::repaint(Form& form) {
  if (QWidget* shown = window(form)) shown->repaint();
}

QWidget* QtDesk::window(const Form& form) const {
  const auto found = faces_.find(&form);
  return found == faces_.end() ? nullptr : &found->second->window();
}

QWidget* QtDesk::frontWindow() const {
  if (QWidget* front = family_.front()) return front;
  return shown_.empty() ? nullptr : window(*shown_.back());
}

}  // namespace trackloom
