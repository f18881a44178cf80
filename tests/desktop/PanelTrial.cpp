#include "desktop/PanelTrial.h"

#include <utility>

namespace trackloom::trial {

FakeShelf::FakeShelf(std::string name) : name_(std::move(name)) {
  view.present = true;
  view.tray = {disc("Disc 0001")};
  view.shelf = {disc("a"), disc("b"), disc("c")};
}

FakeShelf::~FakeShelf() = default;

void FakeShelf::change(const std::function<void()>& change) {
  const std::lock_guard lock(mutex_);
  change();
  changed_.notify_all();
}

int FakeShelf::looks() {
  const std::lock_guard lock(mutex_);
  return looks_;
}

Lines FakeShelf::done() {
  const std::lock_guard lock(mutex_);
  return deeds;
}

std::string FakeShelf::name() const {
  return name_;
}

HostPath FakeShelf::folder() const {
  return HostPath("/somewhere/" + name_);
}

bool FakeShelf::present() {
  return look().present;
}

ShelfView FakeShelf::look() {
  std::unique_lock lock(mutex_);
  ++looks_;
  changed_.wait(lock, [this] { return !slow; });
  return view;
}

void FakeShelf::eject() {
  note("eject");
}

void FakeShelf::insert(const std::string& disc) {
  note("insert " + disc);
}

void FakeShelf::addBlank(BlankDisc kind) {
  note("blank " + std::to_string(static_cast<int>(kind)));
}

void FakeShelf::rename(const std::string& disc, const std::string& newName) {
  note("rename " + disc + " to " + newName);
}

void FakeShelf::remove(const std::string& disc) {
  note("delete " + disc);
}

void FakeShelf::note(const std::string& deed) {
  const std::lock_guard lock(mutex_);
  deeds.push_back(deed);
  if (!refusal.empty()) throw ShelfRefusal(refusal);
}

Panel::Panel(int recorders) {
  for (int at = 1; at <= recorders; ++at)
    shelves.push_back(std::make_shared<FakeShelf>(at == 1 ? "Virtual Recorder" : "Virtual Recorder 2"));
  window.emplace(FrontPanel::Shelves(shelves.begin(), shelves.end()), opener, [this] { return lastWord; });
}

Panel::~Panel() = default;

FakeShelf& Panel::shelf() {
  return *shelves.front();
}

ShelfList& Panel::list() {
  return *window->findChild<ShelfList*>();
}

QPushButton& Panel::button(const char* name) {
  return part<QPushButton>(name);
}

std::string Panel::message() {
  auto& place = part<QTextEdit>("message");
  return place.isVisible() ? place.toPlainText().toStdString() : "";
}

void Panel::show() {
  window->show();
  REQUIRE(comes([this] { return list().topLevelItemCount() == 3; }));
}

Lines Panel::names() {
  Lines names;
  for (int row = 0; row < list().topLevelItemCount(); ++row)
    names.push_back(list().topLevelItem(row)->text(0).toStdString());
  return names;
}

void Panel::press(Qt::Key key) {
  QTest::keyClick(focus(), key);
}

QWidget* Panel::focus() {
  return window->focusWidget() == nullptr ? &*window : window->focusWidget();
}

QLineEdit* Panel::nameBox() {
  return list().findChild<QLineEdit*>();
}

void Panel::type(const char* name) {
  REQUIRE(nameBox() != nullptr);
  nameBox()->setText(name);
  QTest::keyClick(nameBox(), Qt::Key_Return);
}

bool Panel::does(const Lines& due) {
  return comes([&] { return shelf().done() == due; });
}

bool Panel::rests() {
  const int looks = shelf().looks();
  return comes([&] { return shelf().looks() > looks && button("rename").isEnabled(); });
}

ShelfDisc disc(const std::string& name) {
  ShelfDisc blank;
  blank.name = name;
  blank.state = ShelfDisc::State::Blank;
  blank.size = blank.free = 359849;
  return blank;
}

}  // namespace trackloom::trial
