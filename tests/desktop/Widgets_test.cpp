#include <QApplication>
#include <QContextMenuEvent>
#include <QPainter>
#include <QStyleOption>
#include <QTextDocument>
#include <algorithm>
#include <catch2/catch.hpp>

#include "desktop/Meter.h"
#include "desktop/ParagraphButton.h"
#include "desktop/PictureView.h"
#include "desktop/SelectableText.h"
#include "desktop/Shown.h"
#include "desktop/Spinner.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;

namespace {

/// Plain colours, so that what is drawn in which of them can be told from the picture.
QPalette plainColours() {
  QPalette colours(Qt::white);
  colours.setColor(QPalette::WindowText, Qt::black);
  colours.setColor(QPalette::ButtonText, Qt::black);
  colours.setColor(QPalette::Text, Qt::black);
  return colours;
}

/// The smallest place around all dark pixels within `part`.
QRect darkWithin(const QImage& image, const QRect& part) {
  QRect dark;
  for (int y = part.top(); y <= part.bottom(); ++y)
    for (int x = part.left(); x <= part.right(); ++x)
      if (image.pixelColor(x, y).lightness() < 128) dark |= QRect(x, y, 1, 1);
  return dark;
}

/// A spinner of two arrows of 32 by 24 pixels each, at neither end of its range.
struct ShownSpinner {
  ShownSpinner() {
    spinner.setPalette(plainColours());
    spinner.setRange(1, 20);
    spinner.setValue(10);
    spinner.resize(spinner.sizeHint());
    spinner.show();
  }
  QImage half(int place) { return spinner.grab().toImage().copy(0, 24 * place, 32, 24); }
  std::pair<QImage, QImage> halves() { return {half(0), half(1)}; }

  Spinner spinner;
};

QIcon plain(const QColor& colour) {
  QPixmap pixmap(64, 64);
  pixmap.fill(colour);
  return pixmap;
}

}  // namespace

TEST_CASE("A spinner is as large as its two arrows and stays so, and takes the focus but not from the wheel") {
  const Spinner spinner;
  CHECK(spinner.sizeHint() == QSize(32, 48));
  CHECK(spinner.minimumSizeHint() == QSize(32, 48));
  CHECK(spinner.sizePolicy() == QSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed));
  CHECK(spinner.focusPolicy() == Qt::StrongFocus);
  CHECK(spinner.orientation() == Qt::Vertical);
  CHECK_FALSE(spinner.invertedControls());
}

TEST_CASE("In the middle of each half of a spinner is its arrow, the upper one up and the lower one down") {
  ShownSpinner shown;
  for (const int half : {0, 1}) {
    const QImage image = shown.half(half);
    const QRect arrow = darkWithin(image, QRect(8, 4, 16, 16));
    REQUIRE(arrow.width() > 3);
    CHECK(arrow.width() <= 10);
    CHECK(std::abs(2 * arrow.center().x() - 31) <= 2);
    CHECK(std::abs(2 * arrow.center().y() - 23) <= 3);
    const int tip = darkWithin(image, QRect(arrow.left(), arrow.top(), arrow.width(), 1)).width();
    const int foot = darkWithin(image, QRect(arrow.left(), arrow.bottom(), arrow.width(), 1)).width();
    CHECK((tip < foot) == (half == 0));
  }
}

TEST_CASE("Each arrow of a spinner has a button's edge around it") {
  QStyleOption option;
  option.palette = plainColours();
  option.state = QStyle::State_Enabled | QStyle::State_Raised | QStyle::State_Active;
  option.rect = QRect(0, 0, 32, 24);
  ShownSpinner shown;
  for (const int half : {0, 1}) {
    QImage due(32, 24, QImage::Format_RGB32);
    due.fill(Qt::white);
    QPainter painter(&due);
    QApplication::style()->drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter, &shown.spinner);
    painter.end();
    const QImage image = shown.half(half).convertToFormat(QImage::Format_RGB32);
    for (int x = 0; x < 32; ++x) {
      CHECK(image.pixelColor(x, 0) == due.pixelColor(x, 0));
      CHECK(image.pixelColor(x, 23) == due.pixelColor(x, 23));
    }
  }
}

TEST_CASE("Only the arrow that leads nowhere is drawn as disabled, and both where the spinner is") {
  ShownSpinner shown;
  const auto [up, down] = shown.halves();
  shown.spinner.setValue(1);
  const QImage noDown = shown.half(1);
  CHECK(shown.half(0) == up);
  CHECK(noDown != down);
  shown.spinner.setValue(20);
  const QImage noUp = shown.half(0);
  CHECK(shown.half(1) == down);
  CHECK(noUp != up);
  shown.spinner.setValue(10);
  shown.spinner.setEnabled(false);
  CHECK(shown.halves() == std::pair(noUp, noDown));
}

TEST_CASE("Only the arrow that is pressed is drawn as pressed, and after the release none is") {
  ShownSpinner shown;
  const auto [up, down] = shown.halves();
  for (const int half : {0, 1}) {
    const QPoint place(16, 24 * half + 12);
    QTest::mousePress(&shown.spinner, Qt::LeftButton, {}, place);
    CHECK((shown.half(0) != up) == (half == 0));
    CHECK((shown.half(1) != down) == (half == 1));
    QTest::mouseRelease(&shown.spinner, Qt::LeftButton, {}, place);
    CHECK(shown.halves() == std::pair(up, down));
  }
}

TEST_CASE("The arrows of a spinner meet in its middle, and no menu opens over them") {
  ShownSpinner shown;
  QTest::mouseClick(&shown.spinner, Qt::LeftButton, {}, QPoint(16, 23));
  CHECK(shown.spinner.value() == 11);
  QTest::mouseClick(&shown.spinner, Qt::LeftButton, {}, QPoint(16, 24));
  CHECK(shown.spinner.value() == 10);
  QTest::mouseClick(&shown.spinner, Qt::LeftButton, {}, QPoint(0, 0));
  CHECK(shown.spinner.value() == 11);
  QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(16, 12), QPoint(16, 12));
  menu.ignore();
  QApplication::sendEvent(&shown.spinner, &menu);
  CHECK(menu.isAccepted());
  CHECK(QApplication::activePopupWidget() == nullptr);
}

TEST_CASE("A spinner that has the focus has a frame of the highlight's colour at its edge") {
  ShownSpinner shown;
  QApplication::setActiveWindow(&shown.spinner);
  shown.spinner.clearFocus();
  const QImage without = shown.spinner.grab().toImage();
  shown.spinner.setFocus();
  const QImage with = shown.spinner.grab().toImage();
  const QColor frame = shown.spinner.palette().color(QPalette::Highlight);
  for (int y = 0; y < 48; ++y) {
    for (const int x : {0, 31}) {
      CHECK(with.pixelColor(x, y) == frame);
      CHECK(without.pixelColor(x, y) != frame);
    }
  }
  for (int x = 0; x < 32; ++x) CHECK((with.pixelColor(x, 0) == frame && with.pixelColor(x, 47) == frame));
  CHECK(with.copy(1, 1, 30, 46) == without.copy(1, 1, 30, 46));
}

TEST_CASE("A meter shows its words in its middle, across the whole row, and is told to a screen reader") {
  QWidget window;
  Meter meter(&window);
  CHECK(meter.isTextVisible());
  CHECK(meter.alignment() == Qt::AlignCenter);
  CHECK(meter.sizePolicy() == QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed));
  meter.show("12 of 100", 12, 100);
  CHECK(meter.text() == "12 of 100");
  CHECK(meter.accessibleDescription() == "12 of 100");
  CHECK(meter.minimum() == 0);
  CHECK(meter.maximum() == 100);
  CHECK(meter.value() == 12);
}

TEST_CASE("A meter is full of what is too much, empty of what is less than nothing, and never without a range") {
  QWidget window;
  Meter meter(&window);
  meter.show("", 150, 100);
  CHECK(meter.value() == 100);
  meter.show("", -3, 100);
  CHECK(meter.value() == 0);
  meter.show("", 7, 0);
  CHECK(meter.maximum() == 1);
  CHECK(meter.value() == 1);
}

TEST_CASE("A meter draws new words although it measures the same") {
  QWidget window;
  Meter meter(&window);
  meter.resize(300, 24);
  window.show();
  meter.show("One", 1, 10);
  const QImage one = meter.grab().toImage();
  REQUIRE(QTest::qWaitForWindowExposed(&window));
  QTest::qWait(20);
  struct Paints final : QObject {
    bool eventFilter(QObject* /*of*/, QEvent* event) override {
      paints += event->type() == QEvent::Paint ? 1 : 0;
      return false;
    }
    int paints = 0;
  } paints;
  meter.installEventFilter(&paints);
  meter.show("Another", 1, 10);
  CHECK(comesTrue([&] { return paints.paints > 0; }));
  CHECK(meter.grab().toImage() != one);
}

TEST_CASE("A picture stands in the middle of its place, is drawn anew when it changes, and grey when disabled") {
  QWidget window;
  PictureView view(&window);
  view.resize(40, 20);
  window.resize(100, 100);
  window.show();
  const auto at = [&](int x, int y) { return view.grab().toImage().pixelColor(x, y); };
  const QColor ground = at(20, 10);
  view.setPicture(plain(Qt::red));
  CHECK(at(20, 10) == Qt::red);
  CHECK(at(11, 1) == Qt::red);
  CHECK(at(28, 18) == Qt::red);
  CHECK(at(8, 10) == ground);
  CHECK(at(31, 10) == ground);
  view.setEnabled(false);
  CHECK(at(20, 10) != Qt::red);
  view.setEnabled(true);
  REQUIRE(QTest::qWaitForWindowExposed(&window));
  QTest::qWait(20);
  view.setPicture(plain(Qt::blue));
  QTest::qWait(20);
  CHECK(window.screen()->grabWindow(window.winId()).toImage().pixelColor(20, 10) == Qt::blue);
}

TEST_CASE("A text to be copied is read-only, can be selected by mouse and keys, and has no edge of its own") {
  const SelectableText text(nullptr);
  CHECK(text.isReadOnly());
  CHECK(text.textInteractionFlags() == (Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard));
  CHECK(text.tabChangesFocus());
  CHECK(text.frameShape() == QFrame::NoFrame);
  CHECK(text.verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOff);
  CHECK(text.horizontalScrollBarPolicy() == Qt::ScrollBarAlwaysOff);
  CHECK(text.wordWrapMode() == QTextOption::WrapAtWordBoundaryOrAnywhere);
  CHECK(text.document()->documentMargin() == 0);
  CHECK_FALSE(text.viewport()->autoFillBackground());
  CHECK(text.sizePolicy().horizontalPolicy() == QSizePolicy::Preferred);
  CHECK(text.sizePolicy().verticalPolicy() == QSizePolicy::Minimum);
  CHECK(text.sizePolicy().hasHeightForWidth());
  CHECK(text.hasHeightForWidth());
}

TEST_CASE("A text to be copied asks for 64 characters a line and for all its lines, and bears 24") {
  SelectableText text(nullptr);
  const int character = text.fontMetrics().averageCharWidth();
  CHECK(text.sizeHint().width() == 64 * character);
  CHECK(text.minimumSizeHint() == QSize(24 * character, text.fontMetrics().height()));
  const int line = text.heightForWidth(400);
  text.setPlainText(QString("word ").repeated(100));
  CHECK(text.heightForWidth(400) >= 3 * line);
  CHECK(text.heightForWidth(200) > text.heightForWidth(400));
  CHECK(text.sizeHint().height() == text.heightForWidth(64 * character));
}

TEMPLATE_TEST_CASE("A mark with a paragraph grows in height as it becomes narrower, by whole lines", "",
                   ParagraphButton<QCheckBox>, ParagraphButton<QRadioButton>) {
  TestType button(nullptr);
  button.setText(QString("word ").repeated(60));
  CHECK(button.hasHeightForWidth());
  CHECK(button.sizePolicy().hasHeightForWidth());
  CHECK(button.sizePolicy().horizontalPolicy() == QSizePolicy::Preferred);
  CHECK(button.sizePolicy().verticalPolicy() == QSizePolicy::Minimum);
  CHECK(button.heightForWidth(300) > button.heightForWidth(600));
  const int character = button.fontMetrics().averageCharWidth();
  CHECK(button.sizeHint().width() - button.minimumSizeHint().width() == 40 * character);
  CHECK(button.sizeHint().height() == button.heightForWidth(button.sizeHint().width()));
  CHECK(button.minimumSizeHint().height() == button.fontMetrics().height() + 4);
  const auto& style = *button.style();
  const bool box = std::is_same_v<TestType, ParagraphButton<QCheckBox>>;
  const int mark = style.pixelMetric(box ? QStyle::PM_IndicatorHeight : QStyle::PM_ExclusiveIndicatorHeight);
  const int gap = style.pixelMetric(box ? QStyle::PM_CheckBoxLabelSpacing : QStyle::PM_RadioButtonLabelSpacing);
  CHECK(button.minimumSizeHint().width() == mark + gap + 2 + 24 * character);
}

TEMPLATE_TEST_CASE("A mark with a paragraph stands beside the first line, and all lines begin right of it", "",
                   ParagraphButton<QCheckBox>, ParagraphButton<QRadioButton>) {
  TestType button(nullptr);
  button.setPalette(plainColours());
  button.setText("&HHHHHHHHHHHHHHHHHHHHHH HHHHHHHHHHHHHHHHHHHHHHH HHHHHHHHHHHHHHHHHHHHHH HHHHHHHHHHHHHHHHHHH");
  button.resize(button.minimumSizeHint().width(), 200);
  const int left = button.minimumSizeHint().width() - 24 * button.fontMetrics().averageCharWidth();
  const int line = button.fontMetrics().height();
  const QImage image = button.grab().toImage();
  const QRect words = darkWithin(image, QRect(left - 3, 0, image.width() - left + 3, image.height()));
  CHECK(words.left() >= left);
  CHECK(words.left() <= left + 3);
  CHECK(words.top() >= 2);
  CHECK(words.top() < line);
  CHECK(words.bottom() > 2 * line);
  button.setChecked(true);
  const QImage checked = button.grab().toImage();
  QRect changed;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixel(x, y) != checked.pixel(x, y)) changed |= QRect(x, y, 1, 1);
  REQUIRE_FALSE(changed.isEmpty());
  CHECK(changed.right() < left - 2);
  CHECK(std::abs(2 * changed.center().y() - (2 * 2 + line)) <= 4);
}

TEMPLATE_TEST_CASE("A mark with a paragraph shows the focus around its words", "", ParagraphButton<QCheckBox>,
                   ParagraphButton<QRadioButton>) {
  TestType button(nullptr);
  button.setText("Words");
  button.resize(200, 40);
  button.show();
  QApplication::setActiveWindow(&button);
  button.clearFocus();
  const QImage without = button.grab().toImage();
  // Only a step of the Tab key makes the toolkit show the focus on buttons.
  button.setAttribute(Qt::WA_KeyboardFocusChange);
  button.setFocus(Qt::TabFocusReason);
  const QImage with = button.grab().toImage();
  CHECK(with != without);
  CHECK(with.pixel(100, 0) != without.pixel(100, 0));
  CHECK(with.pixel(199, 20) != without.pixel(199, 20));
}

TEST_CASE("The colours that the system numbers are the palette's, and others are what they are") {
  QPalette colours(Qt::white);
  colours.setColor(QPalette::Base, QColor(1, 1, 1));
  colours.setColor(QPalette::Highlight, QColor(2, 2, 2));
  colours.setColor(QPalette::HighlightedText, QColor(3, 3, 3));
  colours.setColor(QPalette::Button, QColor(4, 4, 4));
  colours.setColor(QPalette::Disabled, QPalette::Text, QColor(5, 5, 5));
  const auto system = [&](std::uint32_t number) {
    return shownColour(static_cast<Colour>(0x80000000U | number), colours);
  };
  CHECK(system(5) == QColor(1, 1, 1));
  CHECK(system(13) == QColor(2, 2, 2));
  CHECK(system(14) == QColor(3, 3, 3));
  CHECK(system(15) == QColor(4, 4, 4));
  CHECK(system(17) == QColor(5, 5, 5));
  CHECK_FALSE(system(6).isValid());
  CHECK(shownColour(0x030201, colours) == QColor(1, 2, 3));
  CHECK(shownColour(0, colours) == QColor(Qt::black));
}

TEST_CASE("On a dark ground a dark colour is made light, and a light one stays") {
  const QPalette dark(QColor(20, 20, 20));
  CHECK(shownColour(0x000080, dark).lightness() == 170);
  CHECK(shownColour(0xFFE0E0, dark).lightness() == QColor(0xE0, 0xE0, 0xFF).lightness());
}

TEST_CASE("A caption's ampersands are folded, also one at its end") {
  CHECK(foldCaption("&File") == "File");
  CHECK(foldCaption("a && b") == "a & b");
  CHECK(foldCaption("end&").toStdString() == "end");
  CHECK(foldCaption("") == "");
}

TEST_CASE("Pictures and icons are found by name, and a name without a drawing has none") {
  CHECK_FALSE(iconNamed("Note").isNull());
  CHECK(iconNamed("none of them").isNull());
  CHECK(pictureNamed("none of them").isNull());
}

TEST_CASE("A row's icon is drawn in the colour of selected text where its row is selected, at each of five sizes") {
  const QIcon icon = rowIconNamed("Note");
  const QRgb selected = QApplication::palette().color(QPalette::HighlightedText).rgb();
  for (const auto mode : {QIcon::Normal, QIcon::Selected})
    CHECK(icon.availableSizes(mode) ==
          QList<QSize>{QSize(16, 16), QSize(20, 20), QSize(24, 24), QSize(32, 32), QSize(48, 48)});
  const QImage usual = icon.pixmap(48, QIcon::Normal).toImage().convertToFormat(QImage::Format_ARGB32);
  const QImage marked = icon.pixmap(48, QIcon::Selected).toImage().convertToFormat(QImage::Format_ARGB32);
  bool drawn = false;
  bool otherwise = false;
  for (int y = 0; y < 48; ++y)
    for (int x = 0; x < 48; ++x) {
      CHECK(qAlpha(usual.pixel(x, y)) == qAlpha(marked.pixel(x, y)));
      if (qAlpha(marked.pixel(x, y)) < 255) continue;
      drawn = true;
      CHECK(marked.pixel(x, y) == selected);
      otherwise = otherwise || usual.pixel(x, y) != selected;
    }
  CHECK(drawn);
  CHECK(otherwise);
}

}  // namespace trackloom
