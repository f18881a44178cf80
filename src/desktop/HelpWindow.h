#pragma once

#include <QWidget>
#include <memory>
#include <string>

#include "ports/HelpBook.h"
#include "ports/ShellOpener.h"

class QToolBar;

namespace trackloom {

class HelpPage;
class HelpPanes;

/// The help window: the ways to a page on the left, the page on the right. It has no owner and is no member of the
/// program's family, so it stays usable while a box or a dialog of the program stands, and stays when that closes.
class HelpWindow final : public QWidget {
 public:
  explicit HelpWindow(ShellOpener& opener);

  void setBook(std::shared_ptr<const HelpBook> book);
  /// In front, with the keyboard.
  void comeForward();
  void showPage(const std::string& place);
  void showContents();
  HelpPanes& panes() { return panes_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void layOut();
  void addButtons(QToolBar& bar);
  void follow(const std::string& place, const QStringList& words);
  void pageChanged();
  void zoom(int steps);

  ShellOpener& opener_;
  std::shared_ptr<const HelpBook> book_;
  HelpPanes& panes_;
  HelpPage& page_;
  int zoomed_ = 0;
};

}  // namespace trackloom
