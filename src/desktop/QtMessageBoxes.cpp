#include "desktop/QtMessageBoxes.h"

#include <QKeyEvent>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>

#include "desktop/QtDesk.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

QMessageBox::Icon iconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Information:
      return QMessageBox::Information;
    case BoxIcon::Question:
      return QMessageBox::Question;
    case BoxIcon::Critical:
      return QMessageBox::Critical;
    case BoxIcon::Exclamation:
      break;
  }
  return QMessageBox::Warning;
}

std::vector<QMessageBox::StandardButton> buttonsOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::OkCancel:
      return {QMessageBox::Ok, QMessageBox::Cancel};
    case BoxButtons::YesNo:
      return {QMessageBox::Yes, QMessageBox::No};
    case BoxButtons::YesNoCancel:
      return {QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel};
    case BoxButtons::RetryCancel:
      return {QMessageBox::Retry, QMessageBox::Cancel};
    case BoxButtons::Ok:
      break;
  }
  return {QMessageBox::Ok};
}

BoxAnswer answerOf(int button) {
  switch (button) {
    case QMessageBox::Cancel:
      return BoxAnswer::Cancel;
    case QMessageBox::Yes:
      return BoxAnswer::Yes;
    case QMessageBox::No:
      return BoxAnswer::No;
    case QMessageBox::Retry:
      return BoxAnswer::Retry;
    default:
      return BoxAnswer::Ok;
  }
}

/// To give a layout up takes more than a key that is pressed by habit.
bool hasEscape(BoxButtons buttons) {
  return buttons != BoxButtons::YesNo && buttons != BoxButtons::RetryCancel;
}

/// A box that closes by its buttons, and by Esc and its close box only where the question has an answer for that.
class Box final : public QMessageBox {
 public:
  Box(const MessageBox& box, QWidget* before) : before_(before), mayEscape_(hasEscape(box.buttons)) {
    setWindowTitle(shown(box.title));
    setTextFormat(Qt::PlainText);
    setText(shown(box.text).replace("\r\n", "\n"));
    setIcon(iconOf(box.icon));
    const auto buttons = buttonsOf(box.buttons);
    for (StandardButton button : buttons) addButton(button);
    setDefaultButton(buttons.front());
    setWindowModality(Qt::WindowModal);
  }

 protected:
  void showEvent(QShowEvent* event) override {
    QMessageBox::showEvent(event);
    if (!before_) return;
    QRect frame(QPoint(), size());
    frame.moveCenter(before_->frameGeometry().center());
    move(frame.topLeft());
  }

  void keyPressEvent(QKeyEvent* event) override {
    if (mayEscape_ || event->key() != Qt::Key_Escape) QMessageBox::keyPressEvent(event);
  }

  void closeEvent(QCloseEvent* event) override {
    if (mayEscape_) return QMessageBox::closeEvent(event);
    event->ignore();
  }

 private:
  const QPointer<QWidget> before_;
  const bool mayEscape_;
};

}  // namespace

BoxAnswer QtMessageBoxes::show(const MessageBox& box) {
  QWidget* before = desk_.frontWindow();
  Box shown(box, before);
  desk_.family().join(shown, before);
  const Family::Turn turn(desk_.family(), shown, before);
  return answerOf(shown.exec());
}

}  // namespace trackloom
