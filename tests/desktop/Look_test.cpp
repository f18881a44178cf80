#include <QApplication>
#include <QCheckBox>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTreeView>
#include <algorithm>
#include <catch2/catch.hpp>

#include "desktop/Appearance.h"
#include "desktop/Look.h"

namespace trackloom {

namespace {

/// The lightest that the first `width` pixels of the widget show.
int lightest(QWidget& widget, int width) {
  const QImage image = widget.grab(QRect(0, 0, width, widget.height())).toImage();
  int found = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) found = std::max(found, image.pixelColor(x, y).lightness());
  return found;
}

constexpr QColor Frame(0x10, 0x90, 0x20);

/// What the toolkit itself does, beside the program's look.
const QStyle& toolkit() {
  static const std::unique_ptr<QStyle> fusion(QStyleFactory::create("Fusion"));
  return *fusion;
}

const QStyle& look() {
  return *QApplication::style();
}

template <class Option>
Option optionFor(QStyle::State state, const QPalette& colours) {
  Option option;
  option.rect = QRect(0, 0, 40, 30);
  option.state = state | QStyle::State_Enabled;
  option.palette = colours;
  option.palette.setColor(QPalette::Highlight, Frame);
  return option;
}

/// A picture of what is drawn, which must leave the painter as it was.
template <class Draw>
QImage drawn(Draw draw, const QBrush& brush = Qt::NoBrush) {
  QImage image(40, 30, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setPen(Qt::red);
  painter.setBrush(brush);
  draw(painter);
  CHECK(painter.pen().color() == Qt::red);
  CHECK(painter.brush() == brush);
  CHECK_FALSE(painter.testRenderHint(QPainter::Antialiasing));
  return image;
}

/// The picture with a line of one pixel around it, so far from its edge.
QImage framed(QImage image, int inset) {
  for (int y = inset; y < image.height() - inset; ++y)
    for (int x = inset; x < image.width() - inset; ++x)
      if (std::min({x, y, image.width() - 1 - x, image.height() - 1 - y}) == inset) image.setPixelColor(x, y, Frame);
  return image;
}

QImage control(const QStyle& style, QStyle::ControlElement element, const QStyleOption& option,
               const QWidget* widget = nullptr) {
  return drawn([&](QPainter& painter) { style.drawControl(element, &option, &painter, widget); });
}

QImage complexControl(const QStyle& style, QStyle::ComplexControl element, const QStyleOptionComplex& option) {
  return drawn([&](QPainter& painter) { style.drawComplexControl(element, &option, &painter); });
}

QImage primitive(const QStyle& style, QStyle::PrimitiveElement element, const QStyleOption& option) {
  return drawn([&](QPainter& painter) { style.drawPrimitive(element, &option, &painter); }, Qt::yellow);
}

}  // namespace

TEST_CASE("What is right of the last column's head looks as the heads do") {
  QStandardItemModel model(0, 2);
  QTreeView view;
  view.setModel(&model);
  view.header()->setStretchLastSection(false);
  view.resize(400, 100);
  view.show();
  const QHeaderView& heads = *view.header();
  const int end = heads.sectionPosition(1) + heads.sectionSize(1);
  REQUIRE(end + 20 < heads.width());
  const QImage image = view.header()->grab().toImage();
  for (int y = 0; y < image.height(); ++y) CHECK(image.pixelColor(end - 10, y) == image.pixelColor(end + 10, y));
}

TEST_CASE("A mark that is not set stands out on a dark desktop") {
  constexpr int MarkWidth = 16;
  constexpr int Contrast = 60;
  QRadioButton option("Option");
  QCheckBox box("Box");
  for (QWidget* widget : {static_cast<QWidget*>(&option), static_cast<QWidget*>(&box)}) {
    widget->setPalette(darkPalette());
    CHECK(lightest(*widget, MarkWidth) > darkPalette().color(QPalette::Window).lightness() + Contrast);
  }
}

TEST_CASE("A button has air beside its caption, however long that is") {
  constexpr int Air = 12;
  const QPushButton button("Close Last Incomplete Session");
  CHECK(button.sizeHint().width() >= button.fontMetrics().horizontalAdvance(button.text()) + 2 * Air);
}

TEST_CASE("The dark palette has these colours, for what is enabled and for what is not") {
  struct Due {
    QPalette::ColorRole role;
    QRgb enabled;
    QRgb disabled;
  };
  const QPalette palette = darkPalette();
  for (const Due& due : std::initializer_list<Due>{{QPalette::Window, 0xFF323437, 0xFF323437},
                                                   {QPalette::Button, 0xFF44474B, 0xFF44474B},
                                                   {QPalette::Base, 0xFF242628, 0xFF242628},
                                                   {QPalette::AlternateBase, 0xFF2B2D30, 0xFF2B2D30},
                                                   {QPalette::Highlight, 0xFF2A78B8, 0xFF2A78B8},
                                                   {QPalette::HighlightedText, 0xFFFFFFFF, 0xFFFFFFFF},
                                                   {QPalette::Link, 0xFF6CB8E8, 0xFF6CB8E8},
                                                   {QPalette::WindowText, 0xFFECECEC, 0xFF8E9296},
                                                   {QPalette::Text, 0xFFECECEC, 0xFF8E9296},
                                                   {QPalette::ButtonText, 0xFFECECEC, 0xFF8E9296},
                                                   {QPalette::ToolTipText, 0xFFECECEC, 0xFF8E9296},
                                                   {QPalette::ToolTipBase, 0xFF323437, 0xFF323437},
                                                   {QPalette::PlaceholderText, 0xFF8E9296, 0xFF8E9296}}) {
    INFO(due.role);
    CHECK(palette.color(QPalette::Active, due.role).rgb() == due.enabled);
    CHECK(palette.color(QPalette::Inactive, due.role).rgb() == due.enabled);
    CHECK(palette.color(QPalette::Disabled, due.role).rgb() == due.disabled);
  }
}

TEST_CASE("A palette is dark whose windows are darker than their text, whatever its other colours") {
  QPalette palette;
  palette.setColor(QPalette::Shadow, Qt::black);
  palette.setColor(QPalette::Window, QColor(200, 200, 200));
  palette.setColor(QPalette::WindowText, QColor(60, 60, 60));
  CHECK_FALSE(isDark(palette));
  palette.setColor(QPalette::WindowText, QColor(200, 200, 200));
  CHECK_FALSE(isDark(palette));
  palette.setColor(QPalette::Button, Qt::black);
  palette.setColor(QPalette::Window, QColor(60, 60, 60));
  CHECK(isDark(palette));
}

TEST_CASE("The desktop's portal is asked for the colour scheme, and 1 is a wish for dark") {
  const QDBusMessage question = schemeQuestion();
  CHECK(question.service() == "org.freedesktop.portal.Desktop");
  CHECK(question.path() == "/org/freedesktop/portal/desktop");
  CHECK(question.interface() == "org.freedesktop.portal.Settings");
  CHECK(question.member() == "Read");
  CHECK(question.arguments() == QVariantList{"org.freedesktop.appearance", "color-scheme"});
  for (const unsigned scheme : {0U, 1U, 2U}) {
    const QDBusVariant plain{QVariant(scheme)};
    CHECK(prefersDark(plain) == (scheme == 1));
    CHECK(prefersDark(QDBusVariant(QVariant::fromValue(plain))) == (scheme == 1));
  }
  CHECK_FALSE(prefersDark(QDBusVariant(QVariant("dark"))));
}

TEST_CASE("The application is dressed in the program's look and icon") {
  CHECK(dynamic_cast<Look*>(QApplication::style()) != nullptr);
  CHECK(Look().baseStyle()->name() == "fusion");
  QWidget window;
  window.show();
  QApplication::processEvents();
  CHECK_FALSE(window.windowIcon().pixmap(32).isNull());
}

TEST_CASE("Of the toolkit's hints the look changes the order and the pictures of a box's buttons, and no others") {
  for (int hint = 0; hint <= int{QStyle::SH_SpinBox_SelectOnStep}; ++hint) {
    INFO(hint);
    const auto known = static_cast<QStyle::StyleHint>(hint);
    const int due = known == QStyle::SH_DialogButtonLayout                 ? int{QDialogButtonBox::WinLayout}
                    : known == QStyle::SH_DialogButtonBox_ButtonsHaveIcons ? 0
                                                                           : toolkit().styleHint(known);
    CHECK(look().styleHint(known) == due);
  }
}

TEST_CASE("On a desktop whose boxes have pictures on their buttons the program's have none") {
  struct Yes final : QProxyStyle {
    int styleHint(StyleHint /*hint*/, const QStyleOption* /*option*/, const QWidget* /*widget*/,
                  QStyleHintReturn* /*returned*/) const override {
      return 1;
    }
  };
  Look pictured;
  pictured.setBaseStyle(std::make_unique<Yes>().release());
  CHECK(pictured.styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, nullptr, nullptr) == 0);
  CHECK(pictured.styleHint(QStyle::SH_MessageBox_CenterButtons, nullptr, nullptr, nullptr) == 1);
}

TEST_CASE("Of the toolkit's measures the look changes the margins of heads and of a list's cells, and no others") {
  const QTreeView list;
  for (int metric = 0; metric <= int{QStyle::PM_LineEditIconMargin}; ++metric) {
    INFO(metric);
    const auto known = static_cast<QStyle::PixelMetric>(metric);
    const bool head = known == QStyle::PM_HeaderMargin;
    CHECK(look().pixelMetric(known) == (head ? 6 : toolkit().pixelMetric(known)));
    const bool cell = known == QStyle::PM_FocusFrameHMargin;
    CHECK(look().pixelMetric(known, nullptr, &list) ==
          (head || cell ? 6 : toolkit().pixelMetric(known, nullptr, &list)));
    if (cell) CHECK(look().pixelMetric(known, nullptr, list.header()) == toolkit().pixelMetric(known));
  }
}

TEST_CASE("Rows are eight pixels higher than the toolkit's, buttons four, and nothing else is") {
  const QPalette colours;
  QStyleOptionViewItem row = optionFor<QStyleOptionViewItem>({}, colours);
  row.features = QStyleOptionViewItem::HasDisplay;
  row.text = "A track";
  const auto growth = [](QStyle::ContentsType type, const QStyleOption& option) {
    const QSize contents(200, 20);
    return look().sizeFromContents(type, &option, contents, nullptr) -
           toolkit().sizeFromContents(type, &option, contents, nullptr);
  };
  CHECK(growth(QStyle::CT_ItemViewItem, row).height() == 8);
  const auto button = optionFor<QStyleOptionButton>({}, colours);
  CHECK(growth(QStyle::CT_PushButton, button).height() == 4);
  CHECK(growth(QStyle::CT_CheckBox, button) == QSize(0, 0));
  CHECK(growth(QStyle::CT_ToolButton, optionFor<QStyleOptionToolButton>({}, colours)) == QSize(0, 0));
  CHECK(look().sizeFromContents(QStyle::CT_PushButton, &button, QSize(200, 20), nullptr).width() == 224);
}

TEST_CASE("A list that has the focus has a frame at its edge, and nothing else with a frame has") {
  const QTreeView list;
  const QFrame plain;
  for (const QStyle::State state : {QStyle::State(), QStyle::State(QStyle::State_HasFocus)}) {
    const auto option = optionFor<QStyleOptionFrame>(state, QPalette());
    const QImage usual = control(toolkit(), QStyle::CE_ShapedFrame, option);
    CHECK(control(look(), QStyle::CE_ShapedFrame, option, &list) == (state == 0 ? usual : framed(usual, 0)));
    CHECK(control(look(), QStyle::CE_ShapedFrame, option, &plain) == usual);
    CHECK(control(look(), QStyle::CE_ShapedFrame, option) == usual);
    const auto bar = optionFor<QStyleOptionProgressBar>(state, QPalette());
    CHECK(control(look(), QStyle::CE_ProgressBarGroove, bar, &list) ==
          control(toolkit(), QStyle::CE_ProgressBarGroove, bar, &list));
  }
}

TEST_CASE("A button that the keyboard has come to has a frame within its edge, and one that was clicked has not") {
  const QPalette colours;
  for (const QStyle::State state : {QStyle::State(QStyle::State_HasFocus), QStyle::State(QStyle::State_ReadOnly),
                                    QStyle::State(QStyle::State_KeyboardFocusChange)}) {
    const auto option = optionFor<QStyleOptionButton>(state, colours);
    CHECK(control(look(), QStyle::CE_PushButton, option) == control(toolkit(), QStyle::CE_PushButton, option));
  }
  const auto option =
      optionFor<QStyleOptionButton>(QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange, colours);
  CHECK(control(look(), QStyle::CE_PushButton, option) == framed(control(toolkit(), QStyle::CE_PushButton, option), 3));
  CHECK(control(look(), QStyle::CE_PushButtonBevel, option) == control(toolkit(), QStyle::CE_PushButtonBevel, option));
}

TEST_CASE("A scroll bar that has the focus has a frame at its edge, and a slider is the toolkit's") {
  for (const QStyle::State state : {QStyle::State(), QStyle::State(QStyle::State_HasFocus)}) {
    auto option = optionFor<QStyleOptionSlider>(state, QPalette());
    option.orientation = Qt::Horizontal;
    option.state |= QStyle::State_Horizontal;
    option.maximum = 10;
    option.subControls = QStyle::SC_All;
    const QImage usual = complexControl(toolkit(), QStyle::CC_ScrollBar, option);
    CHECK(complexControl(look(), QStyle::CC_ScrollBar, option) ==
          (option.state.testFlag(QStyle::State_HasFocus) ? framed(usual, 0) : usual));
    CHECK(complexControl(look(), QStyle::CC_Slider, option) == complexControl(toolkit(), QStyle::CC_Slider, option));
  }
}

TEST_CASE("The rest beside the heads is drawn as one single head") {
  const auto empty = optionFor<QStyleOption>({}, QPalette());
  auto head = optionFor<QStyleOptionHeader>(QStyle::State_Horizontal, QPalette());
  head.position = QStyleOptionHeader::OnlyOneSection;
  const QImage due = control(toolkit(), QStyle::CE_HeaderSection, head);
  CHECK(control(look(), QStyle::CE_HeaderEmptyArea, empty) == due);
  CHECK(control(look(), QStyle::CE_HeaderSection, head) == due);
}

TEST_CASE("A tool bar looks as the toolkit draws it, wherever it stands and whatever stands beside it") {
  using Bar = QStyleOptionToolBar;
  auto bar = optionFor<Bar>(QStyle::State_Horizontal, QPalette());
  for (const QRect& place : {QRect(0, 0, 40, 30), QRect(3, 5, 30, 20)})
    for (const auto area : {Qt::TopToolBarArea, Qt::BottomToolBarArea, Qt::LeftToolBarArea, Qt::NoToolBarArea})
      for (const auto line : {Bar::Beginning, Bar::Middle, Bar::End, Bar::OnlyOne}) {
        INFO(area << " " << line << " " << place.width());
        bar.rect = place;
        bar.toolBarArea = area;
        bar.positionOfLine = line;
        CHECK(control(look(), QStyle::CE_ToolBar, bar) == control(toolkit(), QStyle::CE_ToolBar, bar));
      }
  // One that lies in no window of its kind is drawn by nobody.
  const QWidget loose;
  bar.toolBarArea = Qt::TopToolBarArea;
  CHECK(control(look(), QStyle::CE_ToolBar, bar, &loose) == control(toolkit(), QStyle::CE_ToolBar, bar, &loose));
}

TEST_CASE("On a dark desktop the edge of a box is its outline, and a round mark's circle touches its sides alone") {
  const QColor outline(0x8E, 0x92, 0x96);
  auto option = optionFor<QStyleOptionViewItem>({}, darkPalette());
  for (const auto box : {QStyle::PE_IndicatorCheckBox, QStyle::PE_IndicatorItemViewItemCheck}) {
    const QImage image = primitive(look(), box, option);
    for (int x = 1; x < 39; ++x) CHECK((image.pixelColor(x, 0) == outline && image.pixelColor(x, 29) == outline));
    for (int y = 1; y < 29; ++y) CHECK((image.pixelColor(0, y) == outline && image.pixelColor(39, y) == outline));
    CHECK(image.copy(2, 2, 36, 26) == primitive(toolkit(), box, option).copy(2, 2, 36, 26));
  }
  const QImage mark = primitive(look(), QStyle::PE_IndicatorRadioButton, option);
  const QImage usual = primitive(toolkit(), QStyle::PE_IndicatorRadioButton, option);
  CHECK(mark != usual);
  for (const QPoint& corner : {QPoint(0, 0), QPoint(39, 0), QPoint(0, 29), QPoint(39, 29)})
    CHECK(mark.pixelColor(corner) == usual.pixelColor(corner));
  for (const QPoint& side : {QPoint(20, 0), QPoint(20, 29), QPoint(0, 15), QPoint(39, 15)})
    CHECK(std::abs(mark.pixelColor(side).lightness() - outline.lightness()) < 20);
  CHECK(mark.copy(15, 10, 10, 10) == usual.copy(15, 10, 10, 10));
}

TEST_CASE("On a light desktop marks are the toolkit's, and on a dark one everything that is no mark") {
  const auto light = optionFor<QStyleOptionViewItem>({}, QPalette(Qt::lightGray));
  for (const auto mark :
       {QStyle::PE_IndicatorCheckBox, QStyle::PE_IndicatorItemViewItemCheck, QStyle::PE_IndicatorRadioButton})
    CHECK(primitive(look(), mark, light) == primitive(toolkit(), mark, light));
  const auto dark = optionFor<QStyleOptionViewItem>({}, darkPalette());
  for (const auto other : {QStyle::PE_IndicatorArrowUp, QStyle::PE_IndicatorSpinDown, QStyle::PE_PanelButtonTool,
                           QStyle::PE_IndicatorDockWidgetResizeHandle})
    CHECK(primitive(look(), other, dark) == primitive(toolkit(), other, dark));
}

}  // namespace trackloom
