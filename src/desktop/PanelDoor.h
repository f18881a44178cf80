#pragma once

#include <QPointer>
#include <QTimer>
#include <QToolButton>
#include <functional>
#include <memory>
#include <string>

#include "desktop/Answers.h"
#include "desktop/FrontPanel.h"

namespace trackloom {

/// The small button beside the main window's status bar that opens the front panel. It is there while a recorder is,
/// which is looked for every other second, aside.
class PanelDoor final {
 public:
  PanelDoor(FrontPanel::Shelves shelves, ShellOpener& opener, std::function<std::string()> lastWord);

  /// Puts the button into the bar that has the drive's name; a window without that bar gets none.
  void standIn(QWidget& window);
  /// In front of `before`, or where it was, with the keyboard.
  void open(QWidget& before);

 private:
  void look();

  FrontPanel::Shelves shelves_;
  ShellOpener& opener_;
  std::function<std::string()> lastWord_;
  std::unique_ptr<FrontPanel> panel_;
  QPointer<QAction> button_;
  QTimer clock_;
  bool looking_ = false;
  Answers answers_;
};

}  // namespace trackloom
