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

inline ShelfDisc disc(const std::string& name) {
  ShelfDisc blank;
  blank.name = name;
  blank.state = ShelfDisc::State::Blank;
  blank.size = blank.free = 359849;
  return blank;
}

/// A recorder that writes down what hands do with it. What it shows may be changed from outside at any time.
class FakeShelf final : public DiscShelf {
 public:
  explicit FakeShelf(std::string name = "Virtual Recorder") : name_(std::move(name)) {
    view.present = true;
    view.tray = {disc("Disc 0001")};
    view.shelf = {disc("a"), disc("b"), disc("c")};
  }

  ShelfView view;
  std::string refusal;
  Lines deeds;
  bool slow = false;

  /// With the recorder held, since other threads look at it.
  void change(const std::function<void()>& change) {
    const std::lock_guard lock(mutex_);
    change();
    changed_.notify_all();
  }
  int looks() {
    const std::lock_guard lock(mutex_);
    return looks_;
  }
  Lines done() {
    const std::lock_guard lock(mutex_);
    return deeds;
  }

  std::string name() const override { return name_; }
  HostPath folder() const override { return HostPath("/somewhere/" + name_); }
  bool present() override { return look().present; }
  ShelfView look() override {
    std::unique_lock lock(mutex_);
    ++looks_;
    changed_.wait(lock, [this] { return !slow; });
    return view;
  }
  void eject() override { note("eject"); }
  void insert(const std::string& disc) override { note("insert " + disc); }
  void addBlank(BlankDisc kind) override { note("blank " + std::to_string(static_cast<int>(kind))); }
  void rename(const std::string& disc, const std::string& newName) override {
    note("rename " + disc + " to " + newName);
  }
  void remove(const std::string& disc) override { note("delete " + disc); }

 private:
  void note(const std::string& deed) {
    const std::lock_guard lock(mutex_);
    deeds.push_back(deed);
    if (!refusal.empty()) throw ShelfRefusal(refusal);
  }

  std::string name_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int looks_ = 0;
};

struct Panel {
  explicit Panel(int recorders = 1) {
    for (int at = 1; at <= recorders; ++at)
      shelves.push_back(std::make_shared<FakeShelf>(at == 1 ? "Virtual Recorder" : "Virtual Recorder 2"));
    window.emplace(FrontPanel::Shelves(shelves.begin(), shelves.end()), opener, [this] { return lastWord; });
  }

  std::vector<std::shared_ptr<FakeShelf>> shelves;
  fakes::FakeOpener opener;
  std::string lastWord;
  std::optional<FrontPanel> window;

  FakeShelf& shelf() { return *shelves.front(); }
  template <class Widget>
  Widget& part(const char* name) {
    return *window->findChild<Widget*>(name);
  }
  ShelfList& list() { return *window->findChild<ShelfList*>(); }
  QPushButton& button(const char* name) { return part<QPushButton>(name); }
  std::string message() {
    auto& place = part<QTextEdit>("message");
    return place.isVisible() ? place.toPlainText().toStdString() : "";
  }
  void show() {
    window->show();
    REQUIRE(comes([this] { return list().topLevelItemCount() == 3; }));
  }
  Lines names() {
    Lines names;
    for (int row = 0; row < list().topLevelItemCount(); ++row)
      names.push_back(list().topLevelItem(row)->text(0).toStdString());
    return names;
  }
  void press(Qt::Key key) { QTest::keyClick(focus(), key); }
  QWidget* focus() { return window->focusWidget() == nullptr ? &*window : window->focusWidget(); }
  QLineEdit* nameBox() { return list().findChild<QLineEdit*>(); }
  void type(const char* name) {
    REQUIRE(nameBox() != nullptr);
    nameBox()->setText(name);
    QTest::keyClick(nameBox(), Qt::Key_Return);
  }
  bool does(const Lines& due) {
    return comes([&] { return shelf().done() == due; });
  }
  /// Until what was begun is over and its outcome stands in the panel.
  bool rests() {
    const int looks = shelf().looks();
    return comes([&] { return shelf().looks() > looks && button("rename").isEnabled(); });
  }
};

}  // namespace trackloom::trial
