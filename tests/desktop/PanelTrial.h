#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QtTest/QTest>
#include <catch2/catch.hpp>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "desktop/FrontPanel.h"
#include "desktop/ShelfList.h"
#include "fakes/FakeWorld.h"

namespace trackloom::trial {

using Lines = std::vector<std::string>;

/// A look comes once a second, and a machine may be slow.
template <class Condition>
bool comes(Condition condition) {
  return QTest::qWaitFor(condition, 30000);
}

ShelfDisc disc(const std::string& name);

/// A recorder that writes down what hands do with it. What it shows may be changed from outside at any time.
class FakeShelf final : public DiscShelf {
 public:
  explicit FakeShelf(std::string name = "Virtual Recorder");
  ~FakeShelf() override;

  ShelfView view;
  std::string refusal;
  Lines deeds;
  bool slow = false;

  /// With the recorder held, since other threads look at it.
  void change(const std::function<void()>& change);
  int looks();
  Lines done();

  std::string name() const override;
  HostPath folder() const override;
  bool present() override;
  ShelfView look() override;
  void eject() override;
  void insert(const std::string& disc) override;
  void addBlank(BlankDisc kind) override;
  void rename(const std::string& disc, const std::string& newName) override;
  void remove(const std::string& disc) override;

 private:
  void note(const std::string& deed);

  std::string name_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int looks_ = 0;
};

struct Panel {
  explicit Panel(int recorders = 1);
  ~Panel();

  std::vector<std::shared_ptr<FakeShelf>> shelves;
  fakes::FakeOpener opener;
  std::string lastWord;
  std::optional<FrontPanel> window;

  FakeShelf& shelf();
  template <class Widget>
  Widget& part(const char* name) {
    return *window->findChild<Widget*>(name);
  }
  ShelfList& list();
  QPushButton& button(const char* name);
  std::string message();
  void show();
  Lines names();
  void press(Qt::Key key);
  QWidget* focus();
  QLineEdit* nameBox();
  void type(const char* name);
  bool does(const Lines& due);
  /// Until what was begun is over and its outcome stands in the panel.
  bool rests();
};

}  // namespace trackloom::trial
