#include "desktop/HelpViewer.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QSplitter>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QtTest/QTest>
#include <catch2/catch.hpp>
#include <filesystem>
#include <map>

#include "desktop/LiveProgram.h"
#include "desktop/ScreenFit.h"
#include "desktop/ScreenReader.h"
#include "engines/helpfile/HelpBookFile.h"
#include "engines/helpfile/HelpSources.h"
#include "fakes/TempFolder.h"
#include "tour/FilledForms.h"
#include "words/table/WordTable.h"

namespace trackloom {

namespace {

HelpBook trialBook() {
  HelpBook book;
  book.title = "Trial Help";
  book.firstPage = "first.htm";
  book.contents = {{0, "First", "first.htm"}, {0, "Chapter", "second.htm"}, {1, "Second", "second.htm"}};
  book.index = {{0, "Alpha", "first.htm"}, {0, "Beta", "second.htm#end"}, {0, "Beta two", "second.htm"}};
  book.topics = {{69, "second.htm"}};
  book.files = {{"first.htm",
                 "<html><head><title>First page</title></head><body><p>Alpha words <a href=\"second.htm\">on</a> "
                 "<a href=\"https://example.org/x?a=b\">web</a> <a href=\"mailto:a@example.org\">mail</a> "
                 "<a href=\"file:///etc/passwd\">file</a> <a href=\"/etc/passwd\">path</a> "
                 "<a href=\"javascript:alert(1)\">script</a> <a href=\"gone.htm\">gone</a></p>"
                 "<img src=\"/etc/passwd\"><img src=\"file:///usr/share/pixmaps/debian-logo.png\"></body></html>"},
                {"second.htm",
                 "<html><head><title>Second page</title></head><body><p>Beta words, beta again.</p>"
                 "<h2><a name=\"end\"></a>End</h2></body></html>"}};
  return book;
}

/// A viewer over a file of a folder of its own.
struct Trial {
  Trial() { write(trialBook()); }

  void write(const HelpBook& book) { folder.write("a.chm", engines::helpfile::helpFileBytes(book)); }
  std::intptr_t show(std::uint32_t command, std::intptr_t data = 0) {
    return viewer.HtmlHelp(0, folder / "a.chm>main", command, data);
  }
  QWidget* window() const {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->objectName() == "HelpWindow") return widget;
    return nullptr;
  }
  template <class Widget>
  Widget& part(const char* name) const {
    return *window()->findChild<Widget*>(name);
  }
  QTextBrowser& page() const { return part<QTextBrowser>("page"); }
  std::string title() const { return page().documentTitle().toStdString(); }
  QTabWidget& panes() const { return *window()->findChild<QTabWidget*>(); }
  void press(const char* action) const { part<QAction>(action).trigger(); }
  /// Clicks a link of the page by its words.
  void click(const char* words) const {
    QTextCursor found = page().document()->find(words);
    REQUIRE_FALSE(found.isNull());
    found.setPosition((found.selectionStart() + found.selectionEnd()) / 2);
    QTest::mouseClick(page().viewport(), Qt::LeftButton, {}, page().cursorRect(found).center());
  }
  std::vector<std::string> lines(const char* list) const {
    std::vector<std::string> names;
    for (int row = 0; row < part<QListWidget>(list).count(); ++row)
      names.push_back(part<QListWidget>(list).item(row)->text().toStdString());
    return names;
  }

  fakes::TempFolder folder;
  fakes::FakeOpener opener;
  int reads = 0;
  HelpViewer viewer{[this](const HostPath& path) {
                      ++reads;
                      return engines::helpfile::readHelpBook(path);
                    },
                    opener};
};

using Lines = std::vector<std::string>;

}  // namespace

TEST_CASE("A topic shows its page") {
  Trial trial;
  CHECK(trial.window() == nullptr);
  CHECK(trial.show(HelpContext, 69) == 1);
  CHECK(trial.window()->isVisible());
  CHECK(trial.title() == "Second page");
  CHECK(trial.window()->windowTitle() == "Second page - Trial Help");
  CHECK(trial.part<QTreeWidget>("contents").currentItem()->text(0) == "Second");
}

TEST_CASE("A topic that is unknown shows the contents and the first page") {
  Trial trial;
  CHECK(trial.show(HelpContext, 70) == 1);
  CHECK(trial.title() == "First page");
  CHECK(trial.panes().currentIndex() == 0);
}

TEST_CASE("The help window is one, belongs to no other, and is used again") {
  Trial trial;
  trial.show(HelpDisplayContents);
  const QWidget* first = trial.window();
  CHECK(first->parentWidget() == nullptr);
  CHECK(first->windowHandle()->transientParent() == nullptr);
  trial.window()->close();
  trial.show(HelpContext, 69);
  CHECK(trial.window() == first);
  CHECK(first->isVisible());
  trial.show(HelpDisplayContents);
  CHECK(trial.title() == "Second page");
  CHECK(trial.reads == 1);
  CHECK(trial.show(HelpCloseAll) == 0);
  CHECK_FALSE(first->isVisible());
}

TEST_CASE("A target without a window's name is the file, also where its path has the sign between both") {
  Trial trial;
  trial.folder.write("a>b/c.chm", engines::helpfile::helpFileBytes(trialBook()));
  CHECK(trial.viewer.HtmlHelp(0, trial.folder / "a.chm", HelpContext, 69) == 1);
  CHECK(trial.viewer.HtmlHelp(0, trial.folder / "a>b/c.chm", HelpContext, 69) == 1);
  CHECK(trial.viewer.HtmlHelp(0, trial.folder / "a>b/c.chm>main", HelpContext, 69) == 1);
  CHECK(trial.viewer.HtmlHelp(0, trial.folder / "a>b", HelpContext, 69) == 0);
}

TEST_CASE("Each command leads to its way into the help") {
  Trial trial;
  trial.show(HelpDisplayTopic, helpData("second.htm#end"));
  CHECK(trial.title() == "Second page");
  CHECK(trial.page().source().fragment() == "end");
  trial.show(HelpDisplayTopic);
  CHECK(trial.title() == "First page");
  trial.show(HelpDisplayTopic, helpData("gone.htm"));
  CHECK(trial.title() == "First page");
  trial.show(HelpDisplayIndex);
  CHECK(trial.panes().currentIndex() == 1);
  const HelpQuery query{"beta", "main"};
  trial.show(HelpDisplaySearch, helpData(&query));
  CHECK(trial.panes().currentIndex() == 2);
  CHECK(trial.lines("searchLines") == Lines{"Second page"});
  trial.show(HelpDisplayContents);
  CHECK(trial.panes().currentIndex() == 0);
  trial.show(HelpKeywordLookup, helpData("BETA TWO"));
  CHECK(trial.title() == "Second page");
  trial.show(HelpAssociativeLink, helpData("bet"));
  CHECK(trial.panes().currentIndex() == 1);
  CHECK(trial.lines("indexLines") == Lines{"Beta", "Beta two"});
}

TEST_CASE("A missing, empty or damaged help file shows nothing") {
  Trial trial;
  for (const char* bytes : {"", "ITSF", "no help file"}) {
    trial.folder.write("a.chm", bytes);
    CHECK(trial.show(HelpDisplayContents) == 0);
    CHECK(trial.window() == nullptr);
  }
  std::filesystem::remove(trial.folder / "a.chm");
  CHECK(trial.show(HelpDisplayContents) == 0);
  trial.write(trialBook());
  CHECK(trial.show(HelpDisplayContents) == 1);
  CHECK(trial.title() == "First page");
}

TEST_CASE("A help file that has changed is read again, and what is shown stays where the new one is damaged") {
  Trial trial;
  trial.show(HelpContext, 69);
  HelpBook changed = trialBook();
  changed.files["second.htm"] = "<html><head><title>Second page, rewritten</title></head><body></body></html>";
  trial.write(changed);
  trial.show(HelpContext, 69);
  CHECK(trial.title() == "Second page, rewritten");
  trial.folder.write("a.chm", "damaged");
  CHECK(trial.show(HelpContext, 69) == 0);
  CHECK(trial.window()->isVisible());
}

TEST_CASE("Links within the help open in it, and back and forward lead along them") {
  Trial trial;
  trial.show(HelpDisplayTopic);
  CHECK_FALSE(trial.part<QAction>("back").isEnabled());
  trial.click("on");
  CHECK(trial.title() == "Second page");
  CHECK(trial.part<QTreeWidget>("contents").currentItem()->text(0) == "Second");
  trial.press("back");
  CHECK(trial.title() == "First page");
  CHECK(trial.part<QTreeWidget>("contents").currentItem()->text(0) == "First");
  CHECK(trial.window()->windowTitle() == "First page - Trial Help");
  trial.press("forward");
  CHECK(trial.title() == "Second page");
  trial.press("home");
  CHECK(trial.title() == "First page");
  CHECK(trial.opener.orders.empty());
}

TEST_CASE("Links to the web and to an address leave the help by a click alone, and no other link does") {
  Trial trial;
  trial.show(HelpDisplayTopic);
  for (const char* words : {"file", "path", "script", "gone"}) trial.click(words);
  CHECK(trial.title() == "First page");
  CHECK(trial.opener.orders.empty());
  trial.click("web");
  trial.click("mail");
  REQUIRE(trial.opener.orders.size() == 2);
  CHECK(trial.opener.orders[0].file == "https://example.org/x?a=b");
  CHECK(trial.opener.orders[1].file == "mailto:a@example.org");
}

TEST_CASE("A page loads nothing of the machine") {
  Trial trial;
  HelpBook book = trialBook();
  book.files["first.htm"] =
      "<html><head><link rel=\"stylesheet\" href=\"file:///etc/passwd\"></head><body><img src=\"/etc/passwd\"></body>";
  trial.write(book);
  trial.show(HelpDisplayTopic);
  for (const char* name : {"/etc/passwd", "file:///etc/passwd", "help:/../etc/passwd", "https://example.org/a.png"})
    CHECK(trial.page().loadResource(QTextDocument::HtmlResource, QUrl(name)).toString().isEmpty());
}

TEST_CASE("Pages that cannot be shown and pictures that are none are not shown") {
  Trial trial;
  HelpBook book = trialBook();
  book.files["second.htm"] = "<title>Second page</title>" + std::string(1U << 20U, 'x');
  book.files["picture.png"] = "no picture";
  trial.write(book);
  trial.show(HelpContext, 69);
  CHECK(trial.title() == "First page");
  CHECK_FALSE(trial.page().loadResource(QTextDocument::ImageResource, QUrl("picture.png")).isValid());
}

TEST_CASE("The index shows the lines that hold what is typed, and Enter opens the first") {
  Trial trial;
  trial.show(HelpDisplayIndex);
  CHECK(trial.lines("indexLines") == Lines{"Alpha", "Beta", "Beta two"});
  QTest::keyClicks(&trial.part<QLineEdit>("index"), "TWO be");
  CHECK(trial.lines("indexLines") == Lines{"Beta two"});
  QTest::keyClick(&trial.part<QLineEdit>("index"), Qt::Key_Return);
  CHECK(trial.title() == "Second page");
  trial.part<QLineEdit>("index").setText("nothing of the kind");
  CHECK(trial.lines("indexLines").empty());
  QTest::keyClick(&trial.part<QLineEdit>("index"), Qt::Key_Return);
  CHECK(trial.title() == "Second page");
}

TEST_CASE("The search finds the pages that hold all words, and marks them in the page") {
  Trial trial;
  trial.show(HelpDisplayTopic);
  const HelpQuery query;
  trial.show(HelpDisplaySearch, helpData(&query));
  CHECK(trial.lines("searchLines").empty());
  QTest::keyClicks(&trial.part<QLineEdit>("search"), "words");
  CHECK(trial.lines("searchLines") == Lines{"First page", "Second page"});
  CHECK(trial.part<QLabel>("found").text() == "Pages found: 2");
  QTest::keyClicks(&trial.part<QLineEdit>("search"), " beta");
  CHECK(trial.lines("searchLines") == Lines{"Second page"});
  QTest::keyClick(&trial.part<QLineEdit>("search"), Qt::Key_Return);
  CHECK(trial.title() == "Second page");
  CHECK(trial.page().extraSelections().size() == 3);
  for (const auto& mark : trial.page().extraSelections()) {
    CHECK(mark.format.background() == trial.page().palette().highlight());
    CHECK(mark.format.foreground() == trial.page().palette().highlightedText());
  }
  CHECK_FALSE(trial.page().textCursor().hasSelection());
  CHECK(trial.page().textCursor().position() == trial.page().extraSelections().front().cursor.selectionEnd());
  trial.part<QLineEdit>("search").setText("zebra");
  CHECK(trial.part<QLabel>("found").text() == "No page has all these words.");
  trial.press("home");
  CHECK(trial.page().extraSelections().isEmpty());
}

TEST_CASE("A line of the contents opens its page by mouse and by key") {
  Trial trial;
  trial.show(HelpDisplayContents);
  auto& tree = trial.part<QTreeWidget>("contents");
  emit tree.itemClicked(tree.topLevelItem(1)->child(0), 0);
  CHECK(trial.title() == "Second page");
  tree.setCurrentItem(tree.topLevelItem(0));
  QTest::keyClick(&tree, Qt::Key_Return);
  CHECK(trial.title() == "First page");
}

TEST_CASE("The letters of a page grow and shrink within bounds, and come back") {
  Trial trial;
  trial.show(HelpDisplayTopic);
  const int usual = trial.page().font().pointSize();
  trial.press("larger");
  CHECK(trial.page().font().pointSize() == usual + 1);
  for (int i = 0; i < 40; ++i) trial.press("larger");
  CHECK(trial.page().font().pointSize() == usual + 12);
  for (int i = 0; i < 40; ++i) trial.press("smaller");
  CHECK(trial.page().font().pointSize() < usual);
  CHECK(trial.page().font().pointSize() > 0);
}

TEST_CASE("Keys find, enlarge and bring back the letters of a page, also the one without Shift") {
  Trial trial;
  trial.show(HelpDisplayTopic);
  const int usual = trial.page().font().pointSize();
  REQUIRE(QTest::qWaitForWindowActive(trial.window()));
  const auto press = [&](Qt::Key key) {
    QTest::keyClick(&trial.page(), key, Qt::ControlModifier);
    return trial.page().font().pointSize() - usual;
  };
  CHECK(press(Qt::Key_Equal) == 1);
  CHECK(press(Qt::Key_Plus) == 2);
  CHECK(press(Qt::Key_0) == 0);
  CHECK(press(Qt::Key_Minus) == -1);
  for (int i = 0; i < 4; ++i) press(Qt::Key_Minus);
  CHECK(press(Qt::Key_Minus) == -6);
  CHECK(press(Qt::Key_Minus) == -6);
  CHECK(press(Qt::Key_0) == 0);
  press(Qt::Key_F);
  CHECK(trial.panes().currentIndex() == 2);
  CHECK(trial.part<QLineEdit>("search").hasFocus());
}

TEST_CASE("The window of the help opens at the screen's right edge in the middle of its height") {
  Trial trial;
  trial.show(HelpDisplayTopic);
  const QWidget& window = *trial.window();
  const QRect screen = window.screen()->availableGeometry();
  const QSize frame = frameOf(window);
  CHECK(window.size() == QSize(std::min(1000, screen.width() - frame.width()), 700));
  CHECK(window.pos().x() == screen.right() - window.width() - frame.width());
  CHECK(window.pos().y() == (screen.height() - 700 - frame.height()) / 2);
  const QList<int> halves = window.findChild<QSplitter*>()->sizes();
  CHECK(halves.front() == 280);
}

TEST_CASE("Pictures of up to 4096 dots a side are shown, and only such as the help has") {
  Trial trial;
  HelpBook book = trialBook();
  const auto picture = [](int width, int height, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImage(width, height, QImage::Format_Mono).save(&buffer, format);
    return bytes.toStdString();
  };
  book.files["wide.png"] = picture(4096, 1, "png");
  book.files["wider.png"] = picture(4097, 1, "png");
  book.files["high.png"] = picture(1, 4096, "png");
  book.files["higher.png"] = picture(1, 4097, "png");
  book.files["other.bmp"] = picture(2, 2, "bmp");
  trial.write(book);
  trial.show(HelpDisplayTopic);
  const auto shows = [&](const char* name) {
    return trial.page().loadResource(QTextDocument::ImageResource, QUrl(name)).isValid();
  };
  CHECK((shows("wide.png") && shows("high.png")));
  CHECK_FALSE((shows("wider.png") || shows("higher.png") || shows("other.bmp")));
}

TEST_CASE("Links take the colour of a desktop that changes its colours, and the page stays") {
  Trial trial;
  trial.show(HelpDisplayTopic);
  trial.click("on");
  trial.press("back");
  QPalette palette = trial.page().palette();
  palette.setColor(QPalette::Link, Qt::green);
  QApplication::setPalette(palette);
  QCoreApplication::processEvents();
  QTextCursor link = trial.page().document()->find("on");
  CHECK(link.charFormat().foreground().color().name().toStdString() == "#00ff00");
  CHECK(trial.title() == "First page");
  CHECK(trial.part<QAction>("forward").isEnabled());
  QApplication::setPalette(QApplication::style()->standardPalette());
}

TEST_CASE("Esc closes the help window and nothing else") {
  Trial trial;
  trial.show(HelpDisplayTopic);
  QTest::keyClick(trial.window(), Qt::Key_Escape);
  CHECK_FALSE(trial.window()->isVisible());
}

TEST_CASE("All parts of the help window have names for a screen reader, which may read at any time") {
  const trial::ScreenReader reader;
  Trial trial;
  trial.show(HelpContext, 69);
  trial.click("beta");
  trial.press("home");
  for (const char* name : {"contents", "index", "indexLines", "search", "searchLines", "page"}) {
    INFO(name);
    CHECK_FALSE(trial.part<QWidget>(name).accessibleName().isEmpty());
  }
  CHECK(trial.page().accessibleName() == "First page");
}

namespace {

/// The whole program over the help as it is shipped.
struct HelpedProgram {
  HelpedProgram() {
    live.folder.write("Trackloom.chm", engines::helpfile::helpFileBytes(engines::helpfile::readHelpSources(
                                           HostPath(TRACKLOOM_SOURCE_DIR "/assets/help"))));
    live.help.onCall = [this](const fakes::FakeHelp::Call& call) {
      viewer.HtmlHelp(call.owner, call.target, call.command, call.data);
    };
  }

  QWidget* window() const {
    for (QWidget* widget : QApplication::topLevelWidgets())
      if (widget->objectName() == "HelpWindow") return widget;
    return nullptr;
  }
  std::string file() const { return window()->findChild<QTextBrowser*>("page")->source().path().toStdString(); }

  trial::LiveProgram live;
  HelpViewer viewer{engines::helpfile::readHelpBook, live.opener};
};

}  // namespace

TEST_CASE("E170: The help window stays usable while the dialog that opened it stands, and stays when that closes") {
  HelpedProgram helped;
  helped.live.startQuietly();
  helped.live.user.at("Default Options", [&helped](QWidget& dialog) {
    dialog.findChild<QPushButton*>("cmdHelp")->click();
    REQUIRE(helped.window() != nullptr);
    CHECK(helped.file() == "/defaultoptions.htm");
    CHECK_FALSE(helped.live.desk.family().owns(helped.window()));
    // As the window system brings it, which is where a modal window keeps input away from others.
    auto& panes = *helped.window()->findChild<QTabWidget*>();
    const QPoint tab = panes.tabBar()->mapTo(helped.window(), panes.tabBar()->tabRect(2).center());
    QTest::mouseClick(helped.window()->windowHandle(), Qt::LeftButton, {}, tab);
    CHECK(panes.currentIndex() == 2);
    dialog.findChild<QPushButton*>("cmdCancel")->click();
  });
  helped.live.click("mnuToolsOptions");
  helped.live.user.finish();
  CHECK(helped.window()->isVisible());
  helped.live.click("mnuHelpContents");
  CHECK(helped.file() == "/defaultoptions.htm");
}

namespace {

/// The forms with a Help button, each with the number of its topic, as their tables have it.
std::map<std::string, int> topicsOfForms() {
  std::map<std::string, int> topics;
  for (const auto& entry : std::filesystem::directory_iterator(TRACKLOOM_SOURCE_DIR "/tests/words")) {
    if (!entry.path().filename().string().starts_with("frm")) continue;
    for (const words::TableLine& line : words::readTableFile(entry.path().filename().string()))
      if (line.bare(0) == "help") topics[entry.path().stem().string()] = std::stoi(line.bare(1));
  }
  return topics;
}

}  // namespace

TEST_CASE("Help in each dialog shows the page of its topic") {
  HelpedProgram helped;
  helped.live.startQuietly();
  std::map<std::string, int> due = topicsOfForms();
  CHECK(due.size() == 15);
  const auto book = engines::helpfile::readHelpBook(helped.live.folder.host("Trackloom.chm"));
  for (const auto& form : filledForms(helped.live.program, AudioLayout)) {
    helped.live.desk.show(*form);
    INFO(form->name());
    if (auto* button = helped.live.desk.window(*form)->findChild<QPushButton*>("cmdHelp")) {
      REQUIRE(due.contains(form->name()));
      button->click();
      REQUIRE(helped.window() != nullptr);
      CHECK(helped.window()->isVisible());
      CHECK(helped.file() == "/" + book->topics.at(due[form->name()]));
      due.erase(form->name());
    }
    helped.live.desk.hide(*form);
  }
  for (const auto& [form, topic] : due) FAIL(form << " showed no help");
}

}  // namespace trackloom
