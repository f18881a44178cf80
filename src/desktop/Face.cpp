#include "desktop/Face.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <algorithm>

#include "controls/Button.h"
#include "desktop/Binder.h"
#include "desktop/EventTap.h"
#include "desktop/Make.h"
#include "desktop/NoticeReading.h"
#include "desktop/Placement.h"
#include "desktop/QtDesk.h"
#include "desktop/ScreenFit.h"
#include "desktop/SelectableText.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

/// Some compositors never say that a window is active; after this time, in milliseconds, it counts as active.
constexpr int ActivationPatience = 100;

Qt::WindowFlags designedFlags(const QWidget& window) {
  if (window.property("frameless").toBool()) return Qt::SplashScreen | Qt::FramelessWindowHint;
  if (!window.inherits("QDialog")) return window.windowFlags();
  if (window.property("ownEntry").toBool())
    return Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
           Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
  return Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
         Qt::WindowCloseButtonHint;
}

Qt::WindowFlags flagsOf(const QWidget& window, const Form& form) {
  return designedFlags(window) | (form.Topmost ? Qt::WindowStaysOnTopHint : Qt::WindowFlags());
}

/// A heading stands out from the form's text, whatever size that has.
void enlargeHeadings(const QWidget& window) {
  constexpr double Enlarged = 1.35;
  for (QLabel* label : window.findChildren<QLabel*>()) {
    const bool heading = label->property("heading").toBool();
    if (!heading && !label->property("subheading").toBool()) continue;
    QFont font = label->font();
    if (heading) font.setPointSizeF(font.pointSizeF() * Enlarged);
    font.setBold(true);
    label->setFont(font);
  }
}

/// A text that wraps needs the more lines the narrower the window is; none of them may be lost, now or later.
void keepAllLines(QWidget& window) {
  const QLayout* layout = window.layout();
  if (layout != nullptr && layout->hasHeightForWidth())
    window.setMinimumHeight(layout->minimumHeightForWidth(window.width()));
}

/// A dialog opens as wide as it was designed or, in a larger font, as its contents need, and as high as they then are.
void fitToContents(QWidget& window) {
  QLayout& layout = *window.layout();
  // Layouts within a layout keep what they have measured, and a window made ready ahead was measured without its texts.
  for (QLayout* inner : layout.findChildren<QLayout*>()) inner->invalidate();
  const int width = std::max(window.minimumWidth(), layout.totalMinimumSize().width());
  window.setMinimumWidth(width);
  if (window.testAttribute(Qt::WA_Resized))
    window.resize(std::max(window.width(), width), window.height());
  else
    window.resize(width, layout.hasHeightForWidth() ? layout.totalHeightForWidth(width) : layout.sizeHint().height());
  keepAllLines(window);
}

/// The button that a key presses for the whole form: Enter its default button, Esc its cancel button.
Button* buttonFor(const Form& form, int key) {
  for (Control* control : form.controls()) {
    auto* button = dynamic_cast<Button*>(control);
    if (button != nullptr && (key == Qt::Key_Escape ? button->Cancel : button->Default)) return button;
  }
  return nullptr;
}

}  // namespace

std::shared_ptr<Face> Face::make(QtDesk& desk, Form& form) {
  auto face = std::make_shared<Face>(desk, form, Unshared{});
  face->tie();
  return face;
}

Face::Face(QtDesk& desk, Form& form, Unshared /*unshared*/)
    : desk_(desk), form_(&form), window_(desk.takeWindow(form.name()).release()) {}

Face::~Face() {
  if (form_ != nullptr) cut();
}

void Face::tie() {
  window_->setWindowFlags(flagsOf(*window_, *form_));
  enlargeHeadings(*window_);
  const auto showCaption = [this] { window_->setWindowTitle(shown(form_->caption.get())); };
  showCaption();
  keep(form_->changed.connect(showCaption));
  trackloom::make<EventTap>(*window_, [this](QEvent& event) { return handle(event); });
  problems_ = bindControls(*this);
  giveWay(*window_, roomFor(*window_));
  tiePlacement(*this);
}

QWidget* Face::widgetOf(const Control& control) const {
  const auto found = widgets_.find(&control);
  return found == widgets_.end() ? nullptr : found->second;
}

bool Face::handle(QEvent& event) {
  switch (event.type()) {
    case QEvent::Close:
      event.ignore();
      // The window system asks for it, also while the program waits within a call.
      entry().byItself([this] { form_->closeBox(); });
      return true;
    case QEvent::KeyPress:
      return pressKey(static_cast<QKeyEvent&>(event).key());
    case QEvent::LayoutRequest:
      if (placed_ && window_->inherits("QDialog")) keepContents();
      return false;
    case QEvent::WindowActivate:
      tellNotices();
      activateOnce();
      return false;
    default:
      return false;
  }
}

bool Face::pressKey(int key) {
  const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (!enter && key != Qt::Key_Escape) return false;
  auto* focused = qobject_cast<QPushButton*>(window_->focusWidget());
  if (enter && focused != nullptr) {
    focused->click();
  } else {
    entry()([this, key] {
      if (Button* button = buttonFor(*form_, key)) button->click();
    });
  }
  return true;
}

void Face::keepContents() {
  keepAllLines(*window_);
  fitInto(*window_, roomFor(*window_));
}

/// The main window acts without the window system's leave: it opens its first dialog, and would stand there without it
/// for as long as two windows take one after the other.
void Face::awaitActivation() {
  activationDue_ = noticesDue_ = true;
  const int patience = window_->inherits("QMainWindow") ? 0 : ActivationPatience;
  QTimer::singleShot(patience, window_.get(), [weak = weak_from_this()] {
    if (const auto face = weak.lock()) face->activateOnce();
  });
}

void Face::activateOnce() {
  if (std::exchange(activationDue_, false)) entry().later([this] { form_->activated(); });
}

/// What screen readers heard of a window before it was the active one they may have dropped. A window that goes on
/// telling is left alone, since it would be heard twice.
void Face::tellNotices() {
  if (!std::exchange(noticesDue_, false) || window_->property("ownEntry").toBool()) return;
  for (QLabel* label : window_->findChildren<QLabel*>()) tellNotice(*label);
}

void Face::place(QWidget* owner) {
  const bool splash = isSplash();
  if (std::exchange(placed_, true) || (form_->placement.get() != Placement{} && !splash)) return;
  window_->ensurePolished();
  if (owner != nullptr) window_->setScreen(owner->screen());
  if (window_->inherits("QDialog") && !splash) {
    fitToContents(*window_);
    keepContents();
  }
  centreOver(*window_, owner == nullptr ? window_->screen()->availableGeometry() : placeOf(*owner));
}

void Face::tellFailureDetail() {
  auto* line = window_->findChild<SelectableText*>("failureDetail");
  if (line == nullptr) return;
  const std::string detail = desk_.failureDetail();
  line->setPlainText(shown(detail));
  line->setVisible(!detail.empty());
  // Screen readers say it behind the message.
  if (auto* message = window_->findChild<QLabel*>("lblError")) message->setAccessibleDescription(shown(detail));
  // The line can have the focus, to be copied, but Close is what the user comes to first.
  if (const Button* button = buttonFor(*form_, Qt::Key_Return)) widgetOf(*button)->setFocus();
}

void Face::prepare() {
  window_->grab();
  window_->winId();
}

void Face::show(QWidget* owner, Qt::WindowModality modality) {
  live_ = true;
  if (!window_->isVisible()) {
    window_->setWindowModality(modality);
    tellFailureDetail();
    place(owner);
    desk_.family().join(*window_, owner);
    awaitActivation();
  }
  window_->show();
  window_->raise();
  window_->activateWindow();
}

void Face::runModal(QWidget* owner) {
  const auto self = shared_from_this();
  const Family::Turn turn(desk_.family(), *window_, owner);
  show(owner, Qt::WindowModal);
  if (form_ != nullptr && form_->visible()) {
    QEventLoop loop;
    loops_.push_back(&loop);
    loop.exec();
    std::erase(loops_, &loop);
  }
}

void Face::hide() {
  window_->hide();
  for (QEventLoop* loop : loops_) loop->quit();
}

void Face::cut() {
  form_ = nullptr;
  connections_.clear();
  for (const auto& end : ends_) end();
  hide();
}

}  // namespace trackloom
