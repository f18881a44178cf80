#include "desktop/HelpPanes.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTabBar>
#include <QTreeWidget>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

#include "desktop/HelpPage.h"

namespace trackloom {

namespace {

using Lines = std::vector<std::string>;

/// Panes over a book of their own; `chosen` are the places and the words that they led to.
struct Panes {
  Panes() {
    HelpBook book;
    book.contents = {
        {0, "One", "one.htm"}, {3, "Far below", "one.htm#far"}, {1, "Two", "two.htm"}, {0, "Three", "three.htm"}};
    book.index = {{0, "Blank disc", "one.htm"}, {0, "Disc, BLANK", "two.htm#b"}, {0, "blank disc", "three.htm"}};
    book.pages = {{"one.htm", "", "words of one"},
                  {"two.htm", "Second words", "words of two"},
                  {"three.htm", "Third", "nothing"}};
    panes.setBook(std::make_shared<HelpBook>(book));
    panes.chosen = [this](const std::string& place, const QStringList& words) {
      chosen.push_back(place + " " + words.join('+').toStdString());
    };
    panes.resize(300, 400);
    panes.show();
  }
  template <class Widget>
  Widget& part(const char* name) {
    return *panes.findChild<Widget*>(name);
  }
  Lines lines(const char* list) {
    Lines names;
    for (int row = 0; row < part<QListWidget>(list).count(); ++row)
      names.push_back(part<QListWidget>(list).item(row)->text().toStdString());
    return names;
  }
  void click(const char* list, int row) {
    auto& view = part<QListWidget>(list);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualItemRect(view.item(row)).center());
  }
  std::string current() {
    const QTreeWidgetItem* item = part<QTreeWidget>("contents").currentItem();
    return item == nullptr ? "" : item->text(0).toStdString();
  }

  QWidget around;
  HelpPanes panes{&around};
  Lines chosen;
};

}  // namespace

TEST_CASE("A line of the contents lies below the last one that is less deep, and leads to its place") {
  Panes panes;
  panes.around.show();
  auto& tree = panes.part<QTreeWidget>("contents");
  REQUIRE(tree.topLevelItemCount() == 2);
  REQUIRE(tree.topLevelItem(0)->childCount() == 2);
  CHECK(tree.topLevelItem(0)->child(0)->text(0) == "Far below");
  CHECK(tree.topLevelItem(0)->child(1)->text(0) == "Two");
  CHECK(tree.topLevelItem(1)->text(0) == "Three");
  emit tree.itemClicked(tree.topLevelItem(0)->child(0), 0);
  emit tree.itemActivated(tree.topLevelItem(1), 0);
  emit tree.itemClicked(nullptr, 0);
  CHECK(panes.chosen == Lines{"one.htm#far ", "three.htm "});
}

TEST_CASE("The contents show the line of a place, else the first one of its file") {
  Panes panes;
  panes.panes.showPlace("one.htm#far", "one.htm");
  CHECK(panes.current() == "Far below");
  panes.panes.showPlace("one.htm#gone", "one.htm");
  CHECK(panes.current() == "One");
  panes.panes.showPlace("two.htm", "two.htm");
  CHECK(panes.current() == "Two");
  panes.panes.showPlace("four.htm", "four.htm");
  CHECK(panes.current().empty());
}

TEST_CASE("A click, a double click's key and Enter in the box lead to a line of the index") {
  Panes panes;
  panes.around.show();
  panes.panes.showIndex("disc");
  CHECK(panes.panes.currentIndex() == 1);
  CHECK(panes.lines("indexLines") == Lines{"Blank disc", "Disc, BLANK", "blank disc"});
  auto& lines = panes.part<QListWidget>("indexLines");
  panes.click("indexLines", 1);
  emit lines.itemActivated(lines.item(2));
  lines.setCurrentRow(1);
  QTest::keyClick(&panes.part<QLineEdit>("index"), Qt::Key_Return);
  CHECK(panes.chosen == Lines{"two.htm#b ", "three.htm ", "two.htm#b "});
  panes.panes.showIndex("");
  CHECK(panes.part<QLineEdit>("index").text() == "disc");
}

TEST_CASE("Names of the index are found whatever their case, and only as wholes") {
  Panes panes;
  CHECK(panes.panes.placesOf("BLANK DISC") == Lines{"one.htm", "three.htm"});
  CHECK(panes.panes.placesOf("blank").empty());
}

TEST_CASE("The search lists the pages with the words in their titles first, and leads there with the words") {
  Panes panes;
  panes.around.show();
  panes.panes.showSearch("words");
  CHECK(panes.panes.currentIndex() == 2);
  CHECK(panes.lines("searchLines") == Lines{"Second words", "one.htm"});
  CHECK(panes.part<QLabel>("found").text() == "Pages found: 2");
  panes.click("searchLines", 1);
  panes.panes.showSearch("WORDS  of two");
  CHECK(panes.lines("searchLines") == Lines{"Second words"});
  QTest::keyClick(&panes.part<QLineEdit>("search"), Qt::Key_Return);
  CHECK(panes.chosen == Lines{"one.htm words", "two.htm WORDS+of+two"});
  panes.part<QLineEdit>("search").setText("gone");
  QTest::keyClick(&panes.part<QLineEdit>("search"), Qt::Key_Return);
  CHECK(panes.chosen.size() == 2);
  CHECK(panes.part<QLabel>("found").text() == "No page has all these words.");
  panes.part<QLineEdit>("search").setText(" ");
  CHECK(panes.part<QLabel>("found").text().isEmpty());
  CHECK(panes.lines("searchLines").empty());
}

TEST_CASE("Another book fills all three panes anew, with what was typed") {
  Panes panes;
  panes.panes.showIndex("new");
  panes.panes.showSearch("new");
  CHECK(panes.lines("indexLines").empty());
  HelpBook other;
  other.contents = {{0, "New", "new.htm"}};
  other.index = {{0, "New word", "new.htm"}, {0, "Other", "new.htm"}};
  other.pages = {{"new.htm", "New", "new"}};
  panes.panes.setBook(std::make_shared<HelpBook>(other));
  CHECK(panes.part<QTreeWidget>("contents").topLevelItemCount() == 1);
  CHECK(panes.lines("indexLines") == Lines{"New word"});
  CHECK(panes.lines("searchLines") == Lines{"New"});
}

TEST_CASE("A pane that is chosen gives its first part the focus, but not from the tabs") {
  Panes panes;
  panes.around.show();
  REQUIRE(QTest::qWaitForWindowActive(&panes.around));
  panes.part<QTreeWidget>("contents").setFocus();
  panes.panes.setCurrentIndex(1);
  CHECK(panes.part<QLineEdit>("index").hasFocus());
  panes.panes.setCurrentIndex(2);
  CHECK(panes.part<QLineEdit>("search").hasFocus());
  panes.panes.showContents();
  CHECK(panes.part<QTreeWidget>("contents").hasFocus());
  panes.panes.showIndex("");
  CHECK(panes.part<QLineEdit>("index").hasFocus());
  panes.panes.findChild<QTabBar*>()->setFocus();
  panes.panes.setCurrentIndex(2);
  CHECK(panes.panes.findChild<QTabBar*>()->hasFocus());
}

TEST_CASE("The page of another book is shown anew where it has it, and the way back leads nowhere") {
  HelpPage page(nullptr);
  const auto book = [](const char* words) {
    HelpBook made;
    made.files = {{"one.htm", words}, {"two.htm", "two"}};
    return std::make_shared<HelpBook>(made);
  };
  page.setBook(book("first"));
  CHECK(page.place().empty());
  page.open("two.htm");
  page.open("one.htm#part");
  page.open("gone.htm");
  CHECK(page.place() == "one.htm#part");
  CHECK(page.file() == "one.htm");
  CHECK(page.isBackwardAvailable());
  page.setBook(book("second"));
  CHECK(page.toPlainText() == "second");
  CHECK_FALSE(page.isBackwardAvailable());
  CHECK(page.file() == "one.htm");
}

}  // namespace trackloom
