#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "desktop/PageView.h"
#include "desktop/Paper.h"

namespace trackloom {

/// The pages of a document on the screen, with the bar that turns, prints and saves them and chooses their paper.
class PrintPreview final : public QWidget {
 public:
  PrintPreview();

  // What the bar asks of the document's owner.
  std::function<void()> printWanted = [] {};
  std::function<void()> saveWanted = [] {};
  std::function<void(Paper)> paperChosen = [](Paper) {};
  /// Nobody owns the document any more.
  void forget();

  /// Shows these pages, the one in front as before if there is one.
  void setPages(std::vector<PrintedPage> pages);
  void setPaper(Paper paper);
  void setZoom(double percent);
  /// Words below the page: what became of a deed.
  void say(const std::string& words);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void build();
  QWidget* buildBar();
  void connectBar();
  void addKeys();
  void turnTo(int page);
  void showPage();
  void chooseZoom(int entry);
  void stepZoom(int steps);
  void fit();
  void scrollOrTurn(int direction);
  bool handleKey(int key);

  std::vector<PrintedPage> pages_;
  int page_ = 0;
  QPushButton print_{"&Print..."};
  QPushButton save_{"&Save as PDF..."};
  QPushButton previous_{"Pre&vious"};
  QPushButton next_{"&Next"};
  QLabel number_;
  QComboBox zoom_;
  QComboBox paper_;
  QScrollArea scroll_;
  PageView& view_;
  QLabel words_;
};

}  // namespace trackloom
