#pragma once

#include <QMessageBox>
#include <QObject>
#include <QWidget>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "ports/MessageBoxes.h"

namespace trackloom::trial {

/// The buttons of a box from left to right.
QList<QAbstractButton*> buttonsOf(QMessageBox& box);
std::vector<std::string> captionsOf(QMessageBox& box);

/// A user before the real windows: waits for each announced window to stand in front, in that order, and then does the
/// announced deed in it, within whatever loop the program then runs. A window that does not come ends the test program,
/// since nobody else could end such a loop.
class User {
 public:
  using Deed = std::function<void(QWidget& window)>;

  User();
  ~User();
  User(const User&) = delete;
  User& operator=(const User&) = delete;

  void at(const std::string& title, Deed deed);
  /// Compares the real box with the words, the buttons in their order and the icon that are due, and then clicks.
  void atBox(const MessageBox& due, QMessageBox::StandardButton answer);
  /// Runs events until all has been done.
  void finish();

 private:
  struct Step {
    std::string title;
    Deed deed;
  };

  void look();
  void lookLater();

  QObject clock_;
  std::deque<Step> steps_;
  int looks_ = 0;
  bool looking_ = false;
};

}  // namespace trackloom::trial
