#pragma once

#include <QPointer>
#include <QToolButton>
#include <string>
#include <vector>

namespace trackloom {

/// Says in the main window which drives are there and cannot be used: a button beside the status bar, there only while
/// there is something to say. It has the words as its hint, and shows them in a box.
class DriveNotice {
 public:
  /// Puts the button into the bar that has the drive's name; a window without that bar gets none.
  void standIn(QWidget& window);
  void tell(const std::vector<std::string>& why);

 private:
  void show();
  void open(QWidget& before) const;

  QStringList why_;
  QPointer<QToolButton> button_;
  QPointer<QAction> place_;
};

}  // namespace trackloom
