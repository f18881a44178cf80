#include <QAccessible>
#include <QAccessibleWidget>
#include <QCheckBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QtTest/QTest>
#include <algorithm>
#include <catch2/catch.hpp>
#include <iostream>
#include <set>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/ControlVisitor.h"
#include "controls/FolderTreeview.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"
#include "controls/StatusBar.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"
#include "controls/Timer.h"
#include "controls/VScrollBar.h"
#include "desktop/AllForms.h"
#include "desktop/ScreenReader.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// What a screen reader finds in a window.
struct Heard {
  int objects = 0;
  int focusable = 0;
  Lines nameless;
};

std::string described(const QAccessibleInterface& object) {
  const QObject* widget = object.object();
  return widget == nullptr ? "a part" : widget->metaObject()->className() + (" " + widget->objectName().toStdString());
}

void listen(QAccessibleInterface* object, Heard& heard) {
  if (object == nullptr || object->state().invisible) return;
  ++heard.objects;
  if (object->state().focusable && object->role() != QAccessible::Dialog && object->role() != QAccessible::Window) {
    ++heard.focusable;
    if (object->text(QAccessible::Name).isEmpty()) heard.nameless.push_back(described(*object));
  }
  for (int child = 0; child < object->childCount(); ++child) listen(object->child(child), heard);
}

Heard heardIn(QWidget& window) {
  Heard heard;
  listen(QAccessible::queryAccessibleInterface(&window), heard);
  return heard;
}

/// The role that a screen reader must give to a control's widget; NoRole for what it need not know.
class RoleOf final : public ControlVisitor {
 public:
  explicit RoleOf(Control& control) { control.accept(*this); }
  QAccessible::Role role = QAccessible::NoRole;

  void visit(Button&) override { role = QAccessible::Button; }
  void visit(CheckBox&) override { role = QAccessible::CheckBox; }
  void visit(ComboBox&) override { role = QAccessible::ComboBox; }
  void visit(DockStudio&) override {}
  void visit(FolderTreeview&) override { role = QAccessible::Tree; }
  void visit(Frame&) override { role = QAccessible::Grouping; }
  void visit(Label&) override { role = QAccessible::StaticText; }
  void visit(ListView&) override { role = QAccessible::Tree; }
  void visit(OptionButton&) override { role = QAccessible::RadioButton; }
  void visit(PictureBox&) override {}
  void visit(ProgressBarEx&) override { role = QAccessible::ProgressBar; }
  void visit(StatusBar&) override { role = QAccessible::StatusBar; }
  void visit(TabStrip&) override { role = QAccessible::PageTabList; }
  void visit(TextBox&) override { role = QAccessible::EditableText; }
  void visit(Timer&) override {}
  void visit(VScrollBar&) override { role = QAccessible::ScrollBar; }
};

QAccessibleInterface* objectOf(const QWidget& window, const Control& control) {
  QWidget* widget = window.findChild<QWidget*>(QString::fromStdString(control.name()));
  return widget == nullptr ? nullptr : QAccessible::queryAccessibleInterface(widget);
}

Lines wrongRoles(const Form& form, const QWidget& window) {
  Lines wrong;
  for (Control* control : form.controls()) {
    const QAccessibleInterface* object = objectOf(window, *control);
    const bool notice = object != nullptr && object->object()->property("told").toBool();
    const QAccessible::Role role = notice ? QAccessible::Notification : RoleOf(*control).role;
    if (role != QAccessible::NoRole && (object == nullptr || object->role() != role)) wrong.push_back(control->name());
  }
  return wrong;
}

/// Marks that the screen reader is told otherwise than the control has them.
Lines wrongStates(const Form& form, const QWidget& window) {
  Lines wrong;
  for (Control* control : form.controls()) {
    const QAccessibleInterface* object = objectOf(window, *control);
    if (object == nullptr) continue;
    const QAccessible::State state = object->state();
    bool right = control->Enabled || state.disabled;
    if (const auto* box = dynamic_cast<CheckBox*>(control)) right = right && state.checked == box->Value.get();
    if (const auto* option = dynamic_cast<OptionButton*>(control)) right = right && state.checked == option->selected();
    if (const auto* text = dynamic_cast<TextBox*>(control)) right = right && state.readOnly == text->Locked.get();
    if (!right) wrong.push_back(control->name());
  }
  return wrong;
}

/// The children of the nearest widget around both, in which each of the two stands.
std::pair<QRect, QRect> placesOf(const QWidget& a, const QWidget& b) {
  const QWidget* around = a.parentWidget();
  while (!around->isAncestorOf(&b)) around = around->parentWidget();
  const auto placeIn = [around](const QWidget* widget) {
    while (widget->parentWidget() != around) widget = widget->parentWidget();
    return widget->geometry();
  };
  return {placeIn(&a), placeIn(&b)};
}

/// Rows from top to bottom, and in a row from left to right.
bool readsBefore(const QWidget& a, const QWidget& b) {
  const auto [first, second] = placesOf(a, b);
  const int shared = std::min(first.bottom(), second.bottom()) - std::max(first.top(), second.top());
  const bool oneRow = 2 * shared > std::min(first.height(), second.height());
  return oneRow ? first.left() < second.left() : first.top() < second.top();
}

Lines stepsBack(QWidget& window) {
  Lines back;
  std::vector<QWidget*> chain = trial::tabChain(window);
  // A main window has no first widget: its user begins in the middle, and the chain is a round.
  if (window.inherits("QMainWindow"))
    std::rotate(chain.begin(),
                std::min_element(chain.begin(), chain.end(), [](auto* a, auto* b) { return readsBefore(*a, *b); }),
                chain.end());
  for (std::size_t at = 1; at < chain.size(); ++at)
    if (!readsBefore(*chain[at - 1], *chain[at]))
      back.push_back(chain[at - 1]->objectName().toStdString() + " to " + chain[at]->objectName().toStdString());
  return back;
}

template <class Things>
Lines doubleKeys(const Things& things) {
  std::set<QKeySequence> keys;
  Lines doubles;
  for (const auto* thing : things) {
    const QKeySequence key = QKeySequence::mnemonic(thing->text());
    if (!key.isEmpty() && !keys.insert(key).second) doubles.push_back(thing->text().toStdString());
  }
  return doubles;
}

Lines doubleKeysIn(const QWidget& window) {
  Lines doubles = doubleKeys(window.findChildren<QAbstractButton*>());
  for (const QMenu* menu : window.findChildren<QMenu*>())
    for (const std::string& text : doubleKeys(menu->actions())) doubles.push_back(text);
  if (const auto* bar = window.findChild<QMenuBar*>())
    for (const std::string& text : doubleKeys(bar->actions())) doubles.push_back(text);
  return doubles;
}

/// The widgets of a window that look the same with the focus as without it.
Lines unseenFocus(QWidget& window) {
  Lines unseen;
  QApplication::setActiveWindow(&window);
  for (QWidget* widget : trial::tabChain(window)) {
    widget->clearFocus();
    const QImage without = widget->grab().toImage();
    // Only a step of the Tab key makes the toolkit show the focus on buttons.
    window.setAttribute(Qt::WA_KeyboardFocusChange);
    widget->setFocus(Qt::TabFocusReason);
    if (!widget->hasFocus() || widget->grab().toImage() == without)
      unseen.push_back(widget->objectName().toStdString());
  }
  return unseen;
}

void changeEveryState(const Form& form) {
  for (Control* control : form.controls()) {
    control->Enabled = !control->Enabled;
    if (auto* box = dynamic_cast<CheckBox*>(control)) box->Value = !box->Value;
    if (auto* option = dynamic_cast<OptionButton*>(control)) option->select();
    if (auto* text = dynamic_cast<TextBox*>(control)) text->Locked = !text->Locked;
  }
}

}  // namespace

TEST_CASE("A screen reader finds a name for everything that can have the focus") {
  const trial::ScreenReader reader;
  const trial::AllForms forms;
  Heard all;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    const Heard heard = heardIn(shown.window);
    CHECK(heard.nameless == Lines());
    all.objects += heard.objects;
    all.focusable += heard.focusable;
  }
  std::cout << forms.all.size() << " forms, " << all.objects << " objects, " << all.focusable << " focusable\n";
  CHECK(all.focusable > 100);
}

TEST_CASE("A screen reader is told the role of every control") {
  const trial::AllForms forms;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    CHECK(wrongRoles(*form, shown.window) == Lines());
  }
}

TEST_CASE("A screen reader is told what is disabled, checked and read-only, also after a change") {
  const trial::AllForms forms;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    CHECK(wrongStates(*form, shown.window) == Lines());
    changeEveryState(*form);
    CHECK(wrongStates(*form, shown.window) == Lines());
  }
}

TEST_CASE("The Tab key goes through every form as it is read") {
  const trial::AllForms forms;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    CHECK(stepsBack(shown.window) == Lines());
  }
}

TEST_CASE("No two things of a form or of a menu have the same access key") {
  const trial::AllForms forms;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    CHECK(doubleKeysIn(shown.window) == Lines());
  }
}

TEST_CASE("Whatever has the focus shows it") {
  const trial::AllForms forms;
  int seen = 0;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    CHECK(unseenFocus(shown.window) == Lines());
    seen += static_cast<int>(trial::tabChain(shown.window).size());
  }
  std::cout << seen << " widgets with and without the focus\n";
  CHECK(seen > 60);
}

TEST_CASE("The walks find a widget without a name, a step back, a double key and a focus that nobody sees") {
  QWidget window;
  window.resize(300, 100);
  QLineEdit line(&window);
  line.setObjectName("txtName");
  line.move(0, 60);
  QPushButton first("&One", &window);
  first.setObjectName("first");
  QPushButton second("Anot&her &one", &window);
  second.setObjectName("second");
  second.move(100, 0);
  window.show();
  CHECK(heardIn(window).nameless == Lines{"QLineEdit txtName"});
  CHECK(stepsBack(window) == Lines{"txtName to first"});
  CHECK(doubleKeysIn(window).empty());
  second.setText("&other");
  CHECK(doubleKeysIn(window) == Lines{"&other"});
  QWidget plain(&window);
  plain.setObjectName("plain");
  plain.setFocusPolicy(Qt::TabFocus);
  plain.show();
  CHECK(unseenFocus(window) == Lines{"plain"});
}

}  // namespace trackloom
