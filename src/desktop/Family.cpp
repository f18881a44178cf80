#include "desktop/Family.h"

#include <QApplication>
#include <QShortcut>
#include <QWidget>
#include <algorithm>

namespace trackloom {

namespace {

bool isInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

/// The window that the window system's input goes to, or whose shortcut a key is; null for what comes after that.
QWidget* windowOf(const QObject* receiver) {
  if (receiver->isWindowType()) {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->windowHandle() == receiver) return window;
    return nullptr;
  }
  const auto* shortcut = qobject_cast<const QShortcut*>(receiver);
  const auto* owner = shortcut == nullptr ? nullptr : qobject_cast<const QWidget*>(shortcut->parent());
  return owner == nullptr ? nullptr : owner->window();
}

bool stands(const QWidget* window) {
  return window != nullptr && window->isVisible();
}

}  // namespace

Family::Family() {
  qApp->installEventFilter(this);
}

void Family::join(QWidget& window, const QWidget* before) {
  window.winId();
  window.windowHandle()->setTransientParent(before == nullptr ? &root_ : before->windowHandle());
}

bool Family::isMember(const QWindow* window) const {
  while (window != nullptr && window != &root_) window = window->transientParent();
  return window != nullptr;
}

bool Family::owns(const QWidget* window) const {
  return window != nullptr && isMember(window->windowHandle());
}

bool Family::takesInput(const QWidget& window) const {
  if (turns_.empty()) return true;
  const QWidget* from = &window;
  // A menu or the list of a combo box is a window of its own.
  while (from != nullptr && from->window() != turns_.back()) from = from->window()->parentWidget();
  return from != nullptr;
}

QWidget* Family::front() const {
  QWidget* active = QApplication::activeWindow();
  // The window system may be late: a dialog that has come is in front before it is the active window.
  if (stands(active) && owns(active) && takesInput(*active)) return active;
  QWidget* modal = QApplication::activeModalWidget();
  return stands(modal) && owns(modal) ? modal : nullptr;
}

bool Family::eventFilter(QObject* receiver, QEvent* event) {
  if (turns_.empty() || !isInput(event->type())) return false;
  const QWidget* window = windowOf(receiver);
  if (window == nullptr || !owns(window) || takesInput(*window)) return false;
  event->ignore();
  return true;
}

Family::Turn::Turn(Family& family, QWidget& window, QWidget* before)
    : family_(family), window_(window), before_(before) {
  family_.turns_.push_back(&window_);
}

Family::Turn::~Turn() {
  std::erase(family_.turns_, &window_);
  if (before_ && before_->isVisible()) before_->activateWindow();
}

}  // namespace trackloom
