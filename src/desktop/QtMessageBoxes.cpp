#include "desktop/QtMessageBoxes.h"

#include <QKeyEvent>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScreen>

#include "desktop/QtDesk.h"
#include "desktop/ScreenFit.h"
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

/// A text that a box can show at once and whole. A word that is longer than a line, as a path can be, breaks anywhere;
/// and of a text that no file's name makes so long, the middle is left out.
QString readable(const std::string& text) {
  constexpr qsizetype Line = 80;
  constexpr qsizetype Half = 600;
  constexpr QChar BreakHere(0x200B);
  QString whole = shown(text).replace("\r\n", "\n");
  if (whole.size() > 2 * Half) whole = whole.left(Half) + QChar(0x2026) + whole.right(Half);
  QString broken;
  qsizetype run = 0;
  for (const QChar sign : whole) {
    run = sign.isSpace() ? 0 : run + 1;
    if (run > Line && !sign.isLowSurrogate()) {
      broken += BreakHere;
      run = 1;
    }
    broken += sign;
  }
  return broken;
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
    setText(readable(box.text));
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
    setScreen(before_->screen());
    centreOver(*this, placeOf(*before_));
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
  if (box.ofFailure) shown.setInformativeText(readable(desk_.failureDetail()));
  desk_.family().join(shown, before);
  const Family::Turn turn(desk_.family(), shown, before);
  desk_.callUser();
  return answerOf(shown.exec());
}

}  // namespace trackloom
