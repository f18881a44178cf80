#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

#include "desktop/LiveProgram.h"
#include "desktop/PageView.h"
#include "desktop/PrintPreview.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;

namespace {

constexpr const char* StandardTitle = "Print - Standard 8 1/2 x 11 Page";
constexpr const char* ListTitle = "Print Current Layout Track Listing";

/// The parts of a preview that its user sees.
struct Preview {
  explicit Preview(QWidget& page) : window(page) {}

  QWidget& window;
  PrintPreview& preview = *window.findChild<PrintPreview*>();
  PageView& view = *dynamic_cast<PageView*>(preview.focusProxy());
  QScrollArea& scroll = *preview.findChild<QScrollArea*>();

  QPushButton& button(const QString& caption) const {
    for (QPushButton* each : preview.findChildren<QPushButton*>())
      if (each->text() == caption) return *each;
    FAIL("No button " << caption.toStdString());
    throw std::logic_error("unreachable");
  }
  QComboBox& combo(const QString& entry) const {
    for (QComboBox* each : preview.findChildren<QComboBox*>())
      if (each->findText(entry) >= 0) return *each;
    FAIL("No entry " << entry.toStdString());
    throw std::logic_error("unreachable");
  }
  void choose(const QString& entry) const {
    QComboBox& box = combo(entry);
    box.setCurrentText(entry);
    emit box.activated(box.currentIndex());
  }
  /// Pixels between a box and the caption that belongs to it.
  int gapBefore(const QComboBox& box) const {
    for (const QLabel* label : preview.findChildren<QLabel*>())
      if (label->buddy() == &box) return box.geometry().left() - label->geometry().right();
    FAIL("No caption");
    throw std::logic_error("unreachable");
  }
  bool says(const QString& words) const {
    for (const QLabel* label : preview.findChildren<QLabel*>())
      if (label->isVisibleTo(&preview) && label->text().contains(words)) return true;
    return false;
  }
  QString page() const { return view.accessibleName(); }
  void press(int key) const { QTest::keyClick(&view, static_cast<Qt::Key>(key)); }
};

/// A program whose user prints a listing of so many tracks and then uses the preview.
class Listing : public trial::LiveProgram {
 public:
  explicit Listing(int tracks) {
    engines.stage.disc->freeAudio = engines.stage.disc->freeData = 4'000'000;
    startQuietly();
    newLayout(Mp3Layout);
    for (int track = 1; track <= tracks; ++track) addTrack("track " + std::to_string(track) + ".mp3", 75 * 60);
  }
  void print(const std::function<void(const Preview&)>& use) {
    user.at("Track Information", [](QWidget& box) { box.close(); });
    user.at(ListTitle, [](QWidget& window) { trial::in<QPushButton>(window, "cmdPrint").click(); });
    user.at(StandardTitle, [use](QWidget& window) {
      use(Preview(window));
      window.close();
    });
    click("Print");
    user.finish();
  }
};

}  // namespace

TEST_CASE("The listing comes as a page at 100 percent that fills its window and has the keyboard") {
  Listing listing(3);
  listing.print([](const Preview& preview) {
    CHECK(preview.page() == "Page 1 of 1");
    CHECK(preview.says("Page 1 of 1"));
    CHECK(preview.combo("100 %").currentText() == "100 %");
    CHECK(preview.view.scale() == 1);
    CHECK(preview.preview.size() == preview.window.size());
    preview.window.resize(800, 500);
    CHECK(comesTrue([&] { return preview.preview.size() == QSize(800, 500); }));
    CHECK(preview.view.hasFocus());
    CHECK_FALSE(preview.button("&Next").isEnabled());
    CHECK_FALSE(preview.button("Pre&vious").isEnabled());
    CHECK(preview.button("&Print...").isEnabled());
    CHECK(preview.button("&Save as PDF...").isEnabled());
    CHECK(preview.gapBefore(preview.combo("100 %")) <= 10);
    CHECK(preview.gapBefore(preview.combo("Letter")) <= 10);
  });
  CHECK_FALSE(listing.ended);
}

TEST_CASE("The page shows the colour of its header where it stands") {
  Listing listing(3);
  listing.print([](const Preview& preview) {
    const QImage picture = preview.view.grab().toImage();
    int blue = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x)
        if (picture.pixelColor(x, y) == QColor(0, 0, 255)) ++blue;
    CHECK(blue > 600 * 10);
  });
}

TEST_CASE("Pages are turned by the bar and by keys, and stay within the document") {
  Listing listing(99);
  listing.print([](const Preview& preview) {
    const QString last = preview.page().mid(preview.page().lastIndexOf(' ') + 1);
    REQUIRE(last.toInt() > 1);
    preview.button("&Next").click();
    CHECK(preview.page() == "Page 2 of " + last);
    preview.button("Pre&vious").click();
    CHECK(preview.page() == "Page 1 of " + last);
    preview.press(Qt::Key_End);
    CHECK(preview.page() == "Page " + last + " of " + last);
    CHECK_FALSE(preview.button("&Next").isEnabled());
    preview.press(Qt::Key_Home);
    CHECK(preview.page() == "Page 1 of " + last);
    preview.choose("Whole page");
    for (int turn = 0; turn <= last.toInt(); ++turn) preview.press(Qt::Key_PageDown);
    CHECK(preview.page() == "Page " + last + " of " + last);
    for (int turn = 0; turn <= last.toInt(); ++turn) preview.press(Qt::Key_PageUp);
    CHECK(preview.page() == "Page 1 of " + last);
  });
}

TEST_CASE("The button that ends at the last page leaves the keyboard to the page") {
  Listing listing(45);
  listing.print([](const Preview& preview) {
    QPushButton& next = preview.button("&Next");
    next.setFocus();
    while (next.isEnabled()) next.click();
    CHECK(preview.view.hasFocus());
  });
}

TEST_CASE("A page that is larger than its window scrolls before it is turned") {
  Listing listing(99);
  listing.print([](const Preview& preview) {
    preview.choose("200 %");
    CHECK(preview.view.scale() == 2);
    QScrollBar& bar = *preview.scroll.verticalScrollBar();
    REQUIRE(comesTrue([&] { return bar.maximum() > 0; }));
    preview.press(Qt::Key_PageDown);
    CHECK(preview.page().startsWith("Page 1 "));
    CHECK(bar.value() > 0);
    bar.setValue(bar.maximum());
    preview.press(Qt::Key_Space);
    CHECK(preview.page().startsWith("Page 2 "));
    CHECK(bar.value() == 0);
    preview.press(Qt::Key_PageUp);
    CHECK(preview.page().startsWith("Page 1 "));
    CHECK(bar.value() == bar.maximum());
    preview.press(Qt::Key_Up);
    CHECK(bar.value() < bar.maximum());
    preview.press(Qt::Key_Down);
    CHECK(bar.value() == bar.maximum());
  });
}

TEST_CASE("The page can be fitted to its window, which it then follows, and zoomed by keys") {
  Listing listing(3);
  listing.print([](const Preview& preview) {
    preview.choose("Page width");
    const double before = preview.view.scale();
    preview.window.resize(preview.window.width() + 200, preview.window.height());
    CHECK(comesTrue([&] { return preview.view.scale() > before; }));
    CHECK(preview.scroll.horizontalScrollBar()->maximum() == 0);
    preview.choose("Whole page");
    CHECK(comesTrue([&] { return preview.scroll.verticalScrollBar()->maximum() == 0; }));
    preview.choose("100 %");
    QTest::keyClick(&preview.view, Qt::Key_Plus, Qt::ControlModifier);
    CHECK(preview.combo("100 %").currentText() == "125 %");
    CHECK(preview.view.scale() == 1.25);
    for (int times = 0; times < 9; ++times) QTest::keyClick(&preview.view, Qt::Key_Minus, Qt::ControlModifier);
    CHECK(preview.view.scale() == 0.25);
    for (int times = 0; times < 9; ++times) QTest::keyClick(&preview.view, Qt::Key_Plus, Qt::ControlModifier);
    CHECK(preview.view.scale() == 4);
  });
}

TEST_CASE("Another paper lays the same document out anew, and is remembered for the next one") {
  Listing listing(3);
  QSize letter;
  listing.print([&](const Preview& preview) {
    CHECK(preview.combo("A4").currentText() == "Letter");
    letter = preview.view.sizeHint();
    preview.choose("A4");
    CHECK(preview.view.sizeHint().height() > letter.height());
    CHECK(preview.view.text().contains("Unknown"));
  });
  CHECK(listing.folder.read("Printing.ini").find("paper = A4") != std::string::npos);
  listing.print([&](const Preview& preview) {
    CHECK(preview.combo("A4").currentText() == "A4");
    CHECK(preview.view.sizeHint().height() > letter.height());
  });
}

TEST_CASE("Nothing is kept beside the program until a paper is chosen") {
  Listing listing(1);
  listing.print([](const Preview&) {});
  CHECK_FALSE(listing.folder.has("Printing.ini"));
}

TEST_CASE("Save as PDF keeps the pages in a file that is named after the title, and says so") {
  Listing listing(3);
  listing.print([&](const Preview& preview) {
    const auto enter = [&](const std::string& name) {
      listing.user.at("Save As", [name](QWidget& dialog) {
        auto& edit = *dialog.findChild<QLineEdit*>("fileNameEdit");
        CHECK(edit.text() == "Trackloom - Untitled Layout.pdf");
        edit.setText(QString::fromStdString(name));
        QTest::keyClick(&edit, Qt::Key_Return);
      });
    };
    enter(listing.folder / "listing.pdf");
    QTest::keyClick(&preview.view, Qt::Key_S, Qt::ControlModifier);
    CHECK(listing.folder.read("listing.pdf").starts_with("%PDF-"));
    CHECK(preview.says("Saved as " + QString::fromStdString(listing.folder / "listing.pdf")));
    enter("/proc/listing.pdf");
    preview.button("&Save as PDF...").click();
    CHECK(preview.says("/proc/listing.pdf could not be saved: "));
    listing.user.at("Save As", [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    preview.button("&Save as PDF...").click();
    CHECK(preview.says("could not be saved"));
  });
}

TEST_CASE("Without a printer Print says what can be done instead") {
  Listing listing(1);
  listing.print([](const Preview& preview) {
    preview.button("&Print...").click();
    CHECK(preview.says("No printer is set up on this computer."));
  });
}

TEST_CASE("A screen reader reads the page as text, line by line, and hears of the next one") {
  Listing listing(99);
  listing.print([](const Preview& preview) {
    QAccessibleInterface& object = *QAccessible::queryAccessibleInterface(&preview.view);
    CHECK(object.role() == QAccessible::Document);
    CHECK(object.text(QAccessible::Name).startsWith("Page 1 of "));
    CHECK(object.state().readOnly);
    CHECK(object.state().focusable);
    QAccessibleTextInterface& text = *object.textInterface();
    const QString all = text.text(0, text.characterCount());
    CHECK(all == object.text(QAccessible::Value));
    const QStringList lines = all.split('\n');
    CHECK(lines[0] == "Trackloom - Untitled Layout");
    CHECK(lines[1] == "#, Artist, Title, Time");
    CHECK(lines[2] == "01, Unknown, Unknown, 1:00");
    CHECK(lines.back() == "- Page 1 -");
    int start = -1;
    int end = -1;
    const int second = static_cast<int>(lines[0].size()) + 1;
    CHECK(text.textAtOffset(second + 3, QAccessible::LineBoundary, &start, &end) == lines[1] + "\n");
    CHECK(start == second);
    CHECK(text.textAfterOffset(second, QAccessible::LineBoundary, &start, &end) == lines[2] + "\n");
    CHECK(text.textBeforeOffset(second, QAccessible::LineBoundary, &start, &end) == lines[0] + "\n");
    CHECK(text.textAtOffset(-1, QAccessible::WordBoundary, &start, &end).isEmpty());
    const QRect place = text.characterRect(second);
    CHECK(place.isValid());
    CHECK(text.offsetAtPoint(place.center()) == second);
    CHECK(text.offsetAtPoint({-5, -5}) == -1);
    text.setCursorPosition(-5);
    CHECK(text.cursorPosition() == 0);
    text.setCursorPosition(100000);
    CHECK(text.cursorPosition() == text.characterCount());
    text.scrollToSubstring(second, second + 1);
    CHECK(text.cursorPosition() == second);
    start = end = -1;
    text.selection(0, &start, &end);
    CHECK((start == 0 && end == 0));
    CHECK(text.selectionCount() == 0);
    start = end = -1;
    CHECK(text.attributes(3, &start, &end).isEmpty());
    CHECK((start == 0 && end == text.characterCount()));
    CHECK(object.state().multiLine);
    CHECK(text.textBeforeOffset(3, QAccessible::LineBoundary, &start, &end).isEmpty());
    CHECK((start == 0 && end == 0));
    CHECK(text.textAtOffset(-2, QAccessible::LineBoundary, &start, &end) == lines[1] + "\n");
    preview.button("&Next").click();
    CHECK(object.text(QAccessible::Name).startsWith("Page 2 of "));
    CHECK(text.text(0, text.characterCount()).endsWith("- Page 2 -"));
    CHECK_FALSE(text.text(0, text.characterCount()).contains("Artist"));
  });
}

TEST_CASE("Everything in the bar has a name for screen readers, and no two access keys are alike") {
  Listing listing(1);
  listing.print([](const Preview& preview) {
    QString keys;
    for (QWidget* widget : preview.preview.findChildren<QWidget*>()) {
      if ((widget->focusPolicy() & Qt::TabFocus) == 0 || !widget->isVisible()) continue;
      INFO(widget->metaObject()->className());
      CHECK_FALSE(QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty());
    }
    for (const QPushButton* button : preview.preview.findChildren<QPushButton*>())
      keys += button->text()[button->text().indexOf('&') + 1].toLower();
    for (const QLabel* label : preview.preview.findChildren<QLabel*>())
      if (label->buddy() != nullptr) keys += label->text()[label->text().indexOf('&') + 1].toLower();
    CHECK(keys.size() == 6);
    for (const QChar key : keys) CHECK(keys.count(key) == 1);
  });
}

TEST_CASE("The page closed, the program goes on, and can print again") {
  Listing listing(1);
  for (int times = 0; times < 3; ++times) listing.print([](const Preview&) {});
  CHECK_FALSE(listing.ended);
  CHECK(listing.window().isVisible());
}

TEST_CASE("The keys that the page knows end there, and all others go on to the window") {
  struct Around : QWidget {
    std::vector<int> heard;
    void keyPressEvent(QKeyEvent* event) override { heard.push_back(event->key()); }
  } around;
  PrintPreview& preview = *std::make_unique<PrintPreview>().release();
  preview.setParent(&around);
  preview.setPages({PrintedPage{{12240, 15840}, {}, {}, {}}});
  around.show();
  for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_Space, Qt::Key_PageUp, Qt::Key_Home, Qt::Key_End, Qt::Key_Down,
                            Qt::Key_Up, Qt::Key_Right, Qt::Key_Left, Qt::Key_Escape, Qt::Key_A})
    QTest::keyClick(preview.focusProxy(), key);
  CHECK(around.heard == std::vector<int>{Qt::Key_Escape, Qt::Key_A});
}

TEST_CASE("A page is fitted with air of twelve dots around it, and never smaller than a tenth") {
  QWidget around;
  PageView view(&around);
  view.setPage(
      PrintedPage{{12240, 15840}, {}, {}, {{"words", {1500, 3000, 1500, 300}}, {"more", {1500, 3300, 1500, 300}}}},
      "Page");
  CHECK(view.scaleFor({816 + 24, 100}, false) == Approx(1));
  CHECK(view.scaleFor({2 * 816 + 24, 1056 + 24}, true) == Approx(1));
  CHECK(view.scaleFor({408 + 24, 4000}, true) == Approx(0.5));
  CHECK(view.scaleFor({30, 30}, true) == Approx(0.1));
  CHECK(view.sizeHint() == QSize(816 + 24, 1056 + 24));
  CHECK(view.size() == view.sizeHint());
  CHECK(view.placeOf(0) == QRect(12 + 100, 12 + 200, 100, 20));
  CHECK(view.placeOf(6) == QRect(12 + 100, 12 + 220, 100, 20));
  CHECK(view.offsetAt({12 + 100, 12 + 200}) == 0);
  CHECK(view.offsetAt({12 + 199, 12 + 239}) == 6);
  CHECK(view.offsetAt({12 + 99, 12 + 200}) == -1);
  view.setScale(0.5);
  CHECK(view.size() == QSize(408 + 24, 528 + 24));
  view.resize(500, 600);
  CHECK(view.placeOf(0) == QRect(46 + 50, 12 + 100, 50, 10));
  CHECK(view.focusPolicy() == Qt::StrongFocus);
  CHECK(view.accessibleName() == "Page");
}

}  // namespace trackloom
