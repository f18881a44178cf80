#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QMenu>

#include "desktop/PanelTrial.h"

namespace trackloom {

using trial::comes;
using trial::disc;
using trial::Lines;
using trial::Panel;

TEST_CASE("The buttons do what they say with the chosen disc") {
  Panel panel;
  panel.show();
  panel.list().choose("b");
  panel.button("eject").click();
  REQUIRE(panel.does({"eject"}));
  REQUIRE(panel.rests());
  panel.button("insert").click();
  REQUIRE(panel.does({"eject", "insert b"}));
  REQUIRE(panel.rests());
  for (QAction* action : panel.button("addBlank").menu()->actions()) {
    action->trigger();
    REQUIRE(panel.rests());
  }
  CHECK(panel.shelf().done() == Lines{"eject", "insert b", "blank 0", "blank 1", "blank 2"});
  panel.button("showFiles").click();
  CHECK(panel.opener.orders.size() == 1);
}

TEST_CASE("The disc that comes onto the shelf by the user's own hand is the chosen one, and no other") {
  Panel panel;
  panel.show();
  panel.list().choose("a");
  panel.shelf().change([&] { panel.shelf().view.shelf = {disc("a"), disc("aa")}; });
  REQUIRE(comes([&] { return panel.names().size() == 2; }));
  CHECK(panel.list().chosen() == "a");
  panel.shelf().change([&] { panel.shelf().view.shelf = {disc("a"), disc("aa"), disc("x"), disc("z")}; });
  panel.button("eject").click();
  REQUIRE(comes([&] { return panel.names().size() == 4; }));
  CHECK(panel.list().chosen() == "x");
}

TEST_CASE("Enter and a double click insert, F2 names, Delete asks, and Esc closes") {
  Panel panel;
  panel.show();
  panel.list().choose("b");
  panel.list().setFocus();
  panel.press(Qt::Key_Return);
  REQUIRE(panel.does({"insert b"}));
  REQUIRE(panel.rests());
  const QPoint third = panel.list().visualItemRect(panel.list().topLevelItem(2)).center();
  QTest::mouseClick(panel.list().viewport(), Qt::LeftButton, {}, third);
  QTest::mouseDClick(panel.list().viewport(), Qt::LeftButton, {}, third);
  REQUIRE(panel.does({"insert b", "insert c"}));
  REQUIRE(panel.rests());
  panel.press(Qt::Key_F2);
  REQUIRE(panel.nameBox() != nullptr);
  CHECK(panel.nameBox()->text() == "c");
  CHECK(panel.nameBox()->selectedText() == "c");
  panel.type(" Songs ");
  REQUIRE(panel.does({"insert b", "insert c", "rename c to Songs"}));
  REQUIRE(panel.rests());
  panel.press(Qt::Key_Delete);
  CHECK(panel.button("keep").isVisible());
  panel.press(Qt::Key_Escape);
  CHECK_FALSE(panel.button("keep").isVisible());
  CHECK(panel.window->isVisible());
  panel.press(Qt::Key_Escape);
  CHECK_FALSE(panel.window->isVisible());
  CHECK(panel.shelf().done().size() == 3);
}

TEST_CASE("A name that did not change, or was given up, asks for nothing") {
  Panel panel;
  panel.show();
  panel.button("rename").click();
  panel.type("a");
  REQUIRE(comes([&] { return panel.nameBox() == nullptr; }));
  panel.button("rename").click();
  REQUIRE(panel.nameBox() != nullptr);
  panel.nameBox()->setText("x");
  QTest::keyClick(panel.nameBox(), Qt::Key_Escape);
  REQUIRE(comes([&] { return panel.nameBox() == nullptr; }));
  CHECK(panel.window->isVisible());
  CHECK(panel.shelf().done().empty());
}

TEST_CASE("A name that is refused stays in its box, with the reason in the panel, until it is a good one") {
  Panel panel;
  panel.show();
  panel.shelf().refusal = "The name of a disc cannot begin with a dot.";
  panel.button("rename").click();
  panel.type("../x");
  REQUIRE(comes([&] { return panel.message() == panel.shelf().refusal; }));
  const auto* heard = QAccessible::queryAccessibleInterface(&panel.part<QTextEdit>("message"));
  CHECK(heard->role() == QAccessible::Notification);
  CHECK(heard->text(QAccessible::Name).toStdString() == panel.shelf().refusal);
  REQUIRE(panel.nameBox() != nullptr);
  CHECK(panel.nameBox()->text() == "../x");
  CHECK(QApplication::activeModalWidget() == nullptr);
  panel.shelf().change([&] { panel.shelf().refusal.clear(); });
  panel.type("x");
  REQUIRE(panel.does({"rename a to ../x", "rename a to x"}));
  CHECK(comes([&] { return panel.message().empty(); }));
}

TEST_CASE("A panel that goes while a name is being typed asks for nothing") {
  std::optional<Panel> panel(std::in_place);
  panel->show();
  const auto shelf = panel->shelves.front();
  panel->button("rename").click();
  REQUIRE(panel->nameBox() != nullptr);
  panel->nameBox()->setText("half a na");
  panel.reset();
  QTest::qWait(50);
  CHECK(shelf->done().empty());
}

TEST_CASE("A name that is being typed survives the looks meanwhile") {
  Panel panel;
  panel.show();
  panel.list().choose("b");
  panel.button("rename").click();
  REQUIRE(panel.nameBox() != nullptr);
  panel.nameBox()->setText("half a na");
  panel.shelf().change([&] {
    panel.shelf().view.shelf = {disc("a"), disc("aa"), disc("b")};
    panel.shelf().view.shelf.back().changed = 1;
  });
  REQUIRE(comes([&] { return panel.names() == Lines{"a", "aa", "b"}; }));
  REQUIRE(panel.nameBox() != nullptr);
  CHECK(panel.nameBox()->text() == "half a na");
}

TEST_CASE("A disc is deleted only once the question is answered so, and it is the disc that was asked about") {
  Panel panel;
  panel.show();
  panel.list().choose("b");
  panel.button("remove").click();
  CHECK(panel.part<QLabel>("questionText").text() == "Delete the disc \"b\" with all that is recorded on it?");
  CHECK(panel.window->focusWidget() == &panel.button("keep"));
  panel.button("keep").click();
  CHECK_FALSE(panel.button("removeForGood").isVisible());
  CHECK(panel.window->focusWidget() == &panel.list());
  panel.button("remove").click();
  panel.list().choose("c");
  panel.button("removeForGood").click();
  REQUIRE(panel.does({"delete b"}));
  CHECK_FALSE(panel.button("removeForGood").isVisible());
  panel.button("removeForGood").click();
  REQUIRE(panel.rests());
  panel.button("remove").click();
  panel.button("close").click();
  panel.window->show();
  CHECK_FALSE(panel.button("removeForGood").isVisible());
  CHECK(panel.shelf().done() == Lines{"delete b"});
}

TEST_CASE("A refusal of any deed stands in the panel until the next deed") {
  Panel panel;
  panel.show();
  panel.shelf().refusal = "The tray is stuck.";
  panel.button("insert").click();
  REQUIRE(comes([&] { return panel.message() == "The tray is stuck."; }));
  REQUIRE(panel.rests());
  CHECK(panel.message() == "The tray is stuck.");
  panel.shelf().change([&] { panel.shelf().refusal.clear(); });
  panel.button("eject").click();
  CHECK(comes([&] { return panel.message().empty(); }));
}

TEST_CASE("Of several recorders the chosen one is shown and worked on") {
  Panel panel(2);
  panel.shelves[1]->view.tray = {disc("other")};
  panel.shelves[1]->view.shelf = {disc("x")};
  panel.show();
  auto& chooser = panel.part<QComboBox>("recorder");
  CHECK(chooser.isVisible());
  CHECK(chooser.itemText(1) == "Virtual Recorder 2");
  panel.button("remove").click();
  emit chooser.activated(1);
  CHECK_FALSE(panel.button("removeForGood").isVisible());
  REQUIRE(comes([&] { return panel.names() == Lines{"x"}; }));
  CHECK(panel.window->windowTitle() == "Virtual Recorder 2");
  CHECK(panel.part<QLabel>("trayDisc").text() == "other");
  panel.button("insert").click();
  CHECK(comes([&] { return panel.shelves[1]->done() == Lines{"insert x"}; }));
  CHECK(panel.shelf().done().empty());
  Panel one;
  one.show();
  CHECK_FALSE(one.part<QComboBox>("recorder").isVisible());
}

TEST_CASE("A disc whose name is no text is worked on under its own bytes") {
  Panel panel;
  panel.shelf().view.shelf = {disc("caf\xE9"), disc("x"), disc(std::string(255, 'y'))};
  panel.show();
  CHECK(panel.names().front() == "caf\xC3\xA9");
  panel.list().choose("caf\xE9");
  panel.button("insert").click();
  REQUIRE(panel.does({"insert caf\xE9"}));
  REQUIRE(panel.rests());
  panel.list().choose(std::string(255, 'y'));
  panel.button("remove").click();
  CHECK(panel.part<QLabel>("questionText").text().size() < 120);
  panel.button("removeForGood").click();
  CHECK(panel.does({"insert caf\xE9", "delete " + std::string(255, 'y')}));
}

TEST_CASE("The question whether to delete takes the place of what was said before") {
  Panel panel;
  panel.show();
  panel.shelf().change([&] { panel.shelf().refusal = "the tray is stuck"; });
  panel.button("eject").click();
  REQUIRE(comes([&] { return panel.message() == "the tray is stuck"; }));
  REQUIRE(comes([&] { return panel.button("remove").isEnabled(); }));
  panel.button("remove").click();
  CHECK(panel.part<QFrame>("question").isVisible());
  CHECK(panel.message().empty());
}

}  // namespace trackloom
