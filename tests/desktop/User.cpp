#include "desktop/User.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTimer>
#include <QtTest/QTest>
#include <algorithm>
#include <catch2/catch.hpp>
#include <cstdlib>

namespace trackloom::trial {

namespace {

constexpr int LookMilliseconds = 5;
/// A window that is due comes within half a minute.
constexpr int Patience = 30000 / LookMilliseconds;

QWidget* frontWindow() {
  QWidget* modal = QApplication::activeModalWidget();
  QWidget* front = modal == nullptr ? QApplication::activeWindow() : modal;
  return front != nullptr && front->isVisible() && front->isActiveWindow() ? front : nullptr;
}

std::vector<std::string> captionsDue(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::OkCancel:
      return {"OK", "Cancel"};
    case BoxButtons::YesNo:
      return {"Yes", "No"};
    case BoxButtons::YesNoCancel:
      return {"Yes", "No", "Cancel"};
    case BoxButtons::RetryCancel:
      return {"Retry", "Cancel"};
    case BoxButtons::Ok:
      break;
  }
  return {"OK"};
}

QMessageBox::Icon iconDue(BoxIcon icon) {
  if (icon == BoxIcon::Information) return QMessageBox::Information;
  if (icon == BoxIcon::Question) return QMessageBox::Question;
  return icon == BoxIcon::Critical ? QMessageBox::Critical : QMessageBox::Warning;
}

}  // namespace

QList<QAbstractButton*> buttonsOf(QMessageBox& box) {
  QList<QAbstractButton*> buttons = box.buttons();
  std::sort(buttons.begin(), buttons.end(), [](const auto* a, const auto* b) { return a->x() < b->x(); });
  return buttons;
}

std::vector<std::string> captionsOf(QMessageBox& box) {
  std::vector<std::string> texts;
  for (QAbstractButton* button : buttonsOf(box)) texts.push_back(button->text().remove('&').toStdString());
  return texts;
}

User::User() = default;

User::~User() = default;

void User::at(const std::string& title, Deed deed) {
  steps_.push_back({title, std::move(deed)});
  lookLater();
}

void User::atBox(const MessageBox& due, QMessageBox::StandardButton answer) {
  at(due.title, [due, answer](QWidget& window) {
    auto& box = dynamic_cast<QMessageBox&>(window);
    CHECK(box.windowTitle().toStdString() == due.title);
    CHECK(box.text().remove(QChar(0x200B)).toStdString() == due.text);
    CHECK(captionsOf(box) == captionsDue(due.buttons));
    CHECK(box.icon() == iconDue(due.icon));
    box.button(answer)->click();
  });
}

void User::finish() {
  while (!steps_.empty()) QTest::qWait(LookMilliseconds);
}

/// One shot after the other: a repeating timer would stand still while a deed runs a loop of its own.
void User::lookLater() {
  if (std::exchange(looking_, true)) return;
  QTimer::singleShot(LookMilliseconds, &clock_, [this] { look(); });
}

void User::look() {
  looking_ = false;
  if (steps_.empty()) return;
  QWidget* front = frontWindow();
  if (front != nullptr && front->windowTitle().toStdString() == steps_.front().title) {
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    looks_ = 0;
    if (!steps_.empty()) lookLater();
    return step.deed(*front);
  }
  if (++looks_ == Patience) {
    FAIL_CHECK("Awaited: " << steps_.front().title
                           << ", in front: " << (front == nullptr ? "nothing" : front->windowTitle().toStdString()));
    std::abort();
  }
  lookLater();
}

}  // namespace trackloom::trial
