#include <QAccessible>
#include <QApplication>
#include <QTreeView>
#include <algorithm>
#include <catch2/catch.hpp>
#include <iostream>
#include <map>
#include <random>

#include "controls/ControlVisitor.h"
#include "controls/DockStudio.h"
#include "desktop/AllForms.h"
#include "desktop/ScreenReader.h"
#include "desktop/Trial.h"

namespace trackloom {

namespace {

constexpr int Steps = 8000;
constexpr int MostRows = 12;

/// What the client has asked, and how often.
struct Asked {
  long objects = 0;
  long cells = 0;
  long texts = 0;
};

/// Chances from one seed.
class Dice {
 public:
  explicit Dice(unsigned seed) : numbers_(seed) {}
  int below(int count) { return static_cast<int>(numbers_() % static_cast<unsigned>(count)); }
  bool once(int in) { return below(in) == 0; }
  std::string words() {
    static constexpr const char* Words[] = {"", "a", "Round & dance", "&Nocturne", "für Zwei", "\U0001F3B5 song", "99"};
    std::string text;
    for (int count = below(4); count > 0; --count) text += std::string(Words[below(7)]) + " ";
    return text;
  }

 private:
  std::mt19937 numbers_;
};

/// Asks an object, and all that are in it, everything that the toolkit lets a client ask.
class Client {
 public:
  void askAll(QAccessibleInterface* object);
  const Asked& asked() const { return asked_; }

 private:
  void askItself(QAccessibleInterface& object);
  void askText(QAccessibleTextInterface* text);
  void askValue(QAccessibleValueInterface* value);
  void askAction(QAccessibleActionInterface* action);
  void askTable(QAccessibleTableInterface* table);
  void askCell(QAccessibleInterface* cell);

  Asked asked_;
};

void Client::askAll(QAccessibleInterface* object) {
  if (object == nullptr || !object->isValid()) return;
  askItself(*object);
  askText(object->textInterface());
  askValue(object->valueInterface());
  askAction(object->actionInterface());
  askTable(object->tableInterface());
  for (int place = 0; place < object->childCount(); ++place) askAll(object->child(place));
}

void Client::askItself(QAccessibleInterface& object) {
  ++asked_.objects;
  for (const auto text :
       {QAccessible::Name, QAccessible::Description, QAccessible::Value, QAccessible::Help, QAccessible::Accelerator})
    object.text(text);
  object.state();
  object.role();
  object.parent();
  object.window();
  object.relations();
  object.focusChild();
  object.foregroundColor();
  object.childAt(object.rect().center().x(), object.rect().center().y());
}

void Client::askText(QAccessibleTextInterface* text) {
  if (text == nullptr) return;
  ++asked_.texts;
  const int length = text->characterCount();
  CHECK(text->text(0, length).size() == length);
  CHECK(text->cursorPosition() <= length);
  int start = 0;
  int end = 0;
  for (const int offset : {0, length / 2, length}) {
    for (const auto boundary : {QAccessible::CharBoundary, QAccessible::WordBoundary, QAccessible::LineBoundary}) {
      text->textBeforeOffset(offset, boundary, &start, &end);
      text->textAtOffset(offset, boundary, &start, &end);
      text->textAfterOffset(offset, boundary, &start, &end);
    }
    text->attributes(offset, &start, &end);
    text->characterRect(offset);
  }
  for (int place = 0; place < text->selectionCount(); ++place) text->selection(place, &start, &end);
}

void Client::askValue(QAccessibleValueInterface* value) {
  if (value == nullptr) return;
  CHECK(value->currentValue().toDouble() >= value->minimumValue().toDouble());
  CHECK(value->currentValue().toDouble() <= value->maximumValue().toDouble());
  value->minimumStepSize();
}

void Client::askAction(QAccessibleActionInterface* action) {
  if (action == nullptr) return;
  for (const QString& name : action->actionNames()) {
    action->localizedActionDescription(name);
    action->keyBindingsForAction(name);
  }
}

void Client::askTable(QAccessibleTableInterface* table) {
  if (table == nullptr) return;
  for (int row = 0; row < table->rowCount(); ++row) {
    table->rowDescription(row);
    table->isRowSelected(row);
    for (int column = 0; column < table->columnCount(); ++column) askCell(table->cellAt(row, column));
  }
  for (QAccessibleInterface* cell : table->selectedCells()) askCell(cell);
  for (int column = 0; column < table->columnCount(); ++column) table->columnDescription(column);
  table->selectedRows();
  table->caption();
}

void Client::askCell(QAccessibleInterface* object) {
  REQUIRE(object != nullptr);
  ++asked_.cells;
  askItself(*object);
  QAccessibleTableCellInterface* cell = object->tableCellInterface();
  if (cell == nullptr) return;
  cell->isSelected();
  cell->rowIndex();
  cell->columnIndex();
  cell->columnHeaderCells();
  cell->rowHeaderCells();
}

/// One thing at a time that a form could do to a control.
class RoughHand final : public ControlVisitor {
 public:
  explicit RoughHand(Dice& dice) : dice_(dice) {}

  void visit(Button& control) override { control.Caption = dice_.words(); }
  void visit(CheckBox& control) override { control.Value = !control.Value; }
  void visit(ComboBox& control) override;
  void visit(DockStudio& control) override;
  void visit(FolderTreeview& /*control*/) override {}
  void visit(Frame& control) override { control.Caption = dice_.words(); }
  void visit(Label& control) override { control.Caption = dice_.words(); }
  void visit(ListView& control) override;
  void visit(OptionButton& control) override { control.select(); }
  void visit(PictureBox& /*control*/) override {}
  void visit(ProgressBarEx& control) override { control.SetValue(dice_.below(control.Max() + 1)); }
  void visit(StatusBar& control) override { control.SetPanelText(1, dice_.words()); }
  void visit(TabStrip& control) override {
    control.choose(1 + dice_.below(static_cast<int>(control.captions().size())));
  }
  void visit(TextBox& control) override { control.Text = dice_.words(); }
  void visit(Timer& /*control*/) override {}
  void visit(VScrollBar& control) override {
    control.Value = control.min() + dice_.below(control.max() - control.min() + 1);
  }

  void touch(Control& control);

 private:
  ListItem row() { return {dice_.words(), {dice_.words(), dice_.words()}}; }
  int someRow(const ListView& list) { return 1 + dice_.below(list.Count()); }
  void changeOrder(ListView& list);
  void changeRows(ListView& list);
  void changeColumns(ListView& list);

  Dice& dice_;
};

void RoughHand::touch(Control& control) {
  if (dice_.once(8)) control.Enabled = !control.Enabled;
  if (dice_.once(8)) control.Visible = !control.Visible;
  control.accept(*this);
}

void RoughHand::visit(ComboBox& control) {
  if (dice_.once(5)) return control.Clear();
  if (control.items().empty() || dice_.once(2)) control.AddItem(dice_.words());
  control.SetListIndex(dice_.below(static_cast<int>(control.items().size())));
}

void RoughHand::visit(DockStudio& control) {
  const BarDesign& bar = control.bars()[static_cast<std::size_t>(dice_.below(static_cast<int>(control.bars().size())))];
  for (const std::string& name : bar.tools)
    if (control.hasTool(name) && dice_.once(4)) control.tool(name).Enabled = !control.tool(name).Enabled;
}

void RoughHand::visit(ListView& control) {
  for (int deeds = 1 + dice_.below(4); deeds > 0; --deeds) {
    if (control.Count() == 0 || (control.Count() < MostRows && dice_.once(3))) control.Add(row());
    dice_.once(2) ? changeRows(control) : dice_.once(4) ? changeColumns(control) : changeOrder(control);
  }
}

void RoughHand::changeRows(ListView& list) {
  if (dice_.once(12)) return list.Clear();
  if (list.columns().size() > 1) list.SetSubItem(someRow(list), 1, dice_.words());
  list.SelectRow(someRow(list));
  if (list.style().checkBoxes) list.SetChecked(someRow(list), dice_.once(2));
  if (dice_.once(2)) list.Remove(someRow(list));
}

void RoughHand::changeOrder(ListView& list) {
  const int from = someRow(list);
  ListItem moved = list.Item(from);
  list.Remove(from);
  list.Insert(1 + dice_.below(list.Count() + 1), std::move(moved));
  list.SetSortKey(dice_.below(static_cast<int>(list.columns().size())));
  list.SetSorted(dice_.once(3));
}

void RoughHand::changeColumns(ListView& list) {
  list.AddColumn({dice_.words(), dice_.words(), 600});
  if (dice_.once(2)) list.RemoveColumn(static_cast<int>(list.columns().size()));
  if (list.columns().size() > 8) list.RemoveColumn(8);
}

/// What a client finds in a list is what the list shows.
void checkCells(QTreeView& view) {
  QAccessibleTableInterface* table = QAccessible::queryAccessibleInterface(&view)->tableInterface();
  const QAbstractItemModel& model = *view.model();
  // The view counts new rows only when it lays them out, and a hidden one does not.
  if (!view.isVisible()) return;
  REQUIRE(trial::comesTrue([&] { return table->rowCount() == model.rowCount(); }));
  for (int row = 0; row < model.rowCount(); ++row)
    for (int column = 0; column < model.columnCount(); ++column)
      CHECK(table->cellAt(row, column)->text(QAccessible::Name) == model.index(row, column).data().toString());
}

/// Some forms on the screen at a time; each step opens one, closes one, or changes one.
class Bout {
 public:
  explicit Bout(unsigned seed) : dice_(seed), hand_(dice_) {}

  void step();
  /// Every list that is shown holds in the end what its form has put into it.
  void checkLists();
  int openings() const { return openings_; }
  const Asked& asked() const { return client_.asked(); }

 private:
  void change(Form& form, QWidget& window);

  trial::AllForms forms_;
  Dice dice_;
  RoughHand hand_;
  Client client_;
  std::map<Form*, std::unique_ptr<trial::ShownForm>> shown_;
  int openings_ = 0;
};

void Bout::step() {
  Form& form = *forms_.all[static_cast<std::size_t>(dice_.below(static_cast<int>(forms_.all.size())))];
  INFO(form.name());
  auto& shown = shown_[&form];
  if (shown != nullptr && dice_.once(6)) {
    shown.reset();
  } else if (shown == nullptr) {
    shown = std::make_unique<trial::ShownForm>(form);
    ++openings_;
  } else {
    change(form, shown->window);
  }
  if (dice_.once(2)) QTest::qWait(0);
  if (shown != nullptr) client_.askAll(QAccessible::queryAccessibleInterface(&shown->window));
  if (dice_.once(20)) client_.askAll(QAccessible::queryAccessibleInterface(qApp));
}

void Bout::change(Form& form, QWidget& window) {
  const auto& controls = form.controls();
  if (controls.empty()) return;
  for (int count = 0; count < 4; ++count)
    hand_.touch(*controls[static_cast<std::size_t>(dice_.below(static_cast<int>(controls.size())))]);
  for (Control* control : controls) {
    if (dynamic_cast<ListView*>(control) == nullptr) continue;
    hand_.touch(*control);
    checkCells(*window.findChild<QTreeView*>(QString::fromStdString(control->name())));
  }
}

void Bout::checkLists() {
  for (const auto& [form, shown] : shown_) {
    for (Control* control : form->controls()) {
      const auto* list = dynamic_cast<ListView*>(control);
      if (shown == nullptr || list == nullptr) continue;
      auto& view = *shown->window.findChild<QTreeView*>(QString::fromStdString(list->name()));
      CHECK(trial::comesTrue([&] { return view.model()->rowCount() == list->Count(); }));
      checkCells(view);
    }
  }
}

}  // namespace

TEST_CASE("Every form can be used in every way while a screen reader asks for everything") {
  const trial::ScreenReader reader;
  const unsigned seed = Catch::rngSeed();
  CAPTURE(seed);
  Bout bout(seed);
  for (int count = 0; count < Steps; ++count) bout.step();
  bout.checkLists();
  CHECK(reader.told() > Steps);
  const Asked& asked = bout.asked();
  std::cout << "attack: " << Steps << " steps, " << bout.openings() << " windows opened, " << asked.objects
            << " objects, " << asked.cells << " cells and " << asked.texts << " texts asked, " << reader.told()
            << " events heard, seed " << seed << "\n";
}

}  // namespace trackloom
