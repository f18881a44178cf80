#include "desktop/ScreenReader.h"

#include <QTreeView>
#include <catch2/catch.hpp>
#include <stdexcept>

#include "desktop/AllForms.h"
#include "desktop/Answer.h"
#include "desktop/LiveProgram.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;

namespace {

const MessageBox Question{"Remove Track", "Remove the selected track from your layout?", BoxButtons::OkCancel,
                          BoxIcon::Question};

/// Clicks a row, as a user would, presses Delete, and says OK.
void removeByKey(trial::LiveProgram& live, int row) {
  auto& view = trial::in<QTreeView>(live.window(), "ListView1");
  REQUIRE(comesTrue([&] { return view.model()->rowCount() == live.form().ListView1.Count(); }));
  const QPoint place = view.visualRect(view.model()->index(row - 1, 0)).center();
  live.user.atBox(Question, QMessageBox::Ok);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
  QTest::keyClick(&view, Qt::Key_Delete);
  live.user.finish();
}

ListItem row(const std::string& text) {
  return {text, {"2", "3", "4"}};
}

/// Everything that can happen to the rows and columns of a list, with rows shown and with rows that wait.
void workOn(ListView& list, const std::function<void()>& let) {
  for (const char* text : {"c", "a", "d", "b"}) list.Add(row(text));
  let();
  for (const char* text : {"e", "f"}) list.Add(row(text));
  list.SelectRow(list.Count());
  list.Remove(list.Count());
  let();
  list.SetSortKey(0);
  list.SetSorted(true);
  list.Add(row("a2"));
  list.SetSorted(false);
  let();
  ListItem moved = list.Item(2);
  list.Remove(2);
  list.Insert(list.Count() + 1, std::move(moved));
  list.SelectRow(list.Count());
  list.AddColumn({"x", "X", 600});
  let();
  list.RemoveColumn(static_cast<int>(list.columns().size()));
  if (list.style().checkBoxes) list.SetChecked(1, true);
  while (list.Count() > 1) list.Remove(list.Count());
  list.Remove(1);
  for (const char* text : {"y", "z"}) list.Add(row(text));
  let();
  list.SelectRow(2);
  list.Clear();
}

}  // namespace

TEST_CASE("A row can be removed while a screen reader listens, wherever it stands") {
  const auto [kind, rows, removed] = GENERATE(Catch::Generators::table<std::int16_t, int, int>(
      {{AudioLayout, 4, 4}, {Mp3Layout, 4, 4}, {AudioLayout, 11, 10}, {AudioLayout, 2, 1}, {Mp3Layout, 1, 1}}));
  CAPTURE(kind, rows, removed);
  const trial::ScreenReader reader;
  trial::LiveProgram live;
  live.startQuietly();
  live.newLayout(kind);
  for (int track = 1; track <= rows; ++track) live.addTrack("track " + std::to_string(track) + ".mp3", 1000);
  removeByKey(live, removed);
  CHECK_FALSE(live.ended);
  CHECK(live.form().ListView1.Count() == rows - 1);
  CHECK(trial::in<QTreeView>(live.window(), "ListView1").model()->rowCount() == rows - 1);
  live.window().grab();
  CHECK(reader.told() > 0);
}

TEST_CASE("The lists of every form change in every way while a screen reader listens") {
  const trial::ScreenReader reader;
  const trial::AllForms forms;
  int lists = 0;
  for (const auto& form : forms.all) {
    const trial::ShownForm shown(*form);
    for (Control* control : form->controls()) {
      auto* list = dynamic_cast<ListView*>(control);
      if (list == nullptr) continue;
      INFO(form->name() << "." << list->name());
      list->Enabled = true;
      list->Clear();
      workOn(*list, [] { QTest::qWait(40); });
      CHECK(shown.window.findChild<QTreeView*>(QString::fromStdString(list->name()))->model()->rowCount() == 0);
      ++lists;
    }
  }
  CHECK(lists > 6);
  CHECK(reader.told() > 100);
}

TEST_CASE("What the toolkit asks in the middle of a change is answered with what still is, or already is") {
  std::string seen;
  trial::Shown shown;
  auto& model = *shown.widget<QTreeView>("List1").model();
  const auto see = [&] {
    for (int place = 0; place < model.rowCount(); ++place)
      seen += model.index(place, 0).data().toString().toStdString();
    seen += ' ';
  };
  for (const char* text : {"c", "a", "b"}) shown.form->List1.Add(row(text));
  REQUIRE(comesTrue([&] { return model.rowCount() == 3; }));
  QObject::connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, see);
  QObject::connect(&model, &QAbstractItemModel::rowsRemoved, see);
  QObject::connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, see);
  QObject::connect(&model, &QAbstractItemModel::rowsInserted, see);
  QObject::connect(&model, &QAbstractItemModel::layoutAboutToBeChanged, see);
  QObject::connect(&model, &QAbstractItemModel::layoutChanged, see);
  QObject::connect(&model, &QAbstractItemModel::modelAboutToBeReset, see);
  QObject::connect(&model, &QAbstractItemModel::modelReset, see);
  shown.form->List1.Remove(2);
  shown.form->List1.Insert(1, row("d"));
  shown.form->List1.SetSorted(true);
  shown.form->List1.Clear();
  model.disconnect();
  CHECK(seen == "cab cb cb dcb dcb bcd bcd  ");
}

TEST_CASE("A question of the toolkit's that fails is answered all the same") {
  CHECK(answer(7, []() -> int { throw std::runtime_error("gone"); }) == 7);
  CHECK(answer(7, [] { return 8; }) == 8);
}

}  // namespace trackloom
