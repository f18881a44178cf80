#include "desktop/Look.h"

#include <QDialogButtonBox>
#include <QIcon>
#include <QMainWindow>
#include <QPainter>
#include <QStyleOptionHeader>
#include <QStyleOptionToolBar>
#include <QTimer>
#include <algorithm>

#include "desktop/Appearance.h"
#include "desktop/EditReading.h"
#include "desktop/NoticeReading.h"
#include "desktop/PageView.h"

namespace trackloom {

namespace {

/// What a row of a list gets above and below its text together, in device-independent pixels.
constexpr int RowAir = 8;
/// Left and right of the text in a cell and in the head of its column, which so stand in one line.
constexpr int CellAir = 6;
/// Left and right of a button's caption, and above and below it beyond what the toolkit gives.
constexpr int ButtonAir = 12;
constexpr int ButtonAirAbove = 2;
constexpr int ButtonFocusInset = 3;

/// The toolkit draws the outline of a mark darker than the window, which is lost on a dark one.
void outlineMark(QPainter& painter, const QStyleOption& option, bool round) {
  const QRectF edge = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(option.palette.color(QPalette::Disabled, QPalette::WindowText));
  painter.setBrush(Qt::NoBrush);
  round ? painter.drawEllipse(edge) : painter.drawRect(edge);
  painter.restore();
}

/// What is right of the last column's head looks as if it belonged to the heads.
void drawRestOfHeads(const QStyle& style, const QStyleOption& option, QPainter* painter, const QWidget* widget) {
  QStyleOptionHeader rest;
  rest.QStyleOption::operator=(option);
  rest.state |= QStyle::State_Horizontal;
  rest.position = QStyleOptionHeader::OnlyOneSection;
  style.drawControl(QStyle::CE_HeaderSection, &rest, painter, widget);
}

/// A tool bar at the top of its window. The toolkit draws the lines at its edges dot by dot and spread over threads,
/// which takes longer than the rest of a whole window; here they are bars.
void drawTopBar(const QProxyStyle& toolkit, QStyleOptionToolBar bar, QPainter& painter, const QWidget* widget) {
  const QColor light(255, 255, 255, 90);
  const QColor dark(0, 0, 0, 60);
  const bool atTheEnd =
      bar.positionOfLine == QStyleOptionToolBar::End || bar.positionOfLine == QStyleOptionToolBar::OnlyOne;
  bar.toolBarArea = Qt::NoToolBarArea;
  toolkit.QProxyStyle::drawControl(QStyle::CE_ToolBar, &bar, &painter, widget);
  const auto line = [&](int y, const QColor& colour) {
    painter.fillRect(bar.rect.left(), y, bar.rect.width(), 1, colour);
  };
  line(bar.rect.top(), light);
  line(bar.rect.bottom() - (atTheEnd ? 1 : 0), dark);
  if (atTheEnd) line(bar.rect.bottom(), light);
}

/// The bar that is to be drawn, if it stands at the top of a window of its kind.
const QStyleOptionToolBar* topBar(const QStyleOption* option, const QWidget* widget) {
  const auto* bar = qstyleoption_cast<const QStyleOptionToolBar*>(option);
  const bool placed = widget == nullptr || qobject_cast<const QMainWindow*>(widget->parentWidget()) != nullptr;
  return placed && bar != nullptr && bar->toolBarArea == Qt::TopToolBarArea ? bar : nullptr;
}

/// The toolkit itself shows no focus on lists, on scroll bars and on the button that is the default anyway.
void drawFocusFrame(QPainter* painter, const QStyleOption& option, int inset) {
  if (!option.state.testFlag(QStyle::State_HasFocus)) return;
  painter->save();
  painter->setPen(option.palette.color(QPalette::Highlight));
  painter->drawRect(option.rect.adjusted(inset, inset, -inset - 1, -inset - 1));
  painter->restore();
}

}  // namespace

int Look::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                    QStyleHintReturn* returned) const {
  if (hint == SH_DialogButtonLayout) return QDialogButtonBox::WinLayout;
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  return QProxyStyle::styleHint(hint, option, widget, returned);
}

int Look::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  if (metric == PM_HeaderMargin) return CellAir;
  if (metric == PM_FocusFrameHMargin && widget != nullptr && widget->inherits("QTreeView")) return CellAir;
  return QProxyStyle::pixelMetric(metric, option, widget);
}

void Look::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                         const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  const bool round = element == PE_IndicatorRadioButton;
  if (!round && element != PE_IndicatorCheckBox && element != PE_IndicatorItemViewItemCheck) return;
  if (isDark(option->palette)) outlineMark(*painter, *option, round);
}

void Look::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const {
  if (element == CE_HeaderEmptyArea) return drawRestOfHeads(*this, *option, painter, widget);
  if (element == CE_ToolBar)
    if (const auto* bar = topBar(option, widget)) return drawTopBar(*this, *bar, *painter, widget);
  QProxyStyle::drawControl(element, option, painter, widget);
  if (element == CE_ShapedFrame && widget != nullptr && widget->inherits("QAbstractItemView"))
    drawFocusFrame(painter, *option, 0);
  if (element == CE_PushButton && option->state.testFlag(State_KeyboardFocusChange))
    drawFocusFrame(painter, *option, ButtonFocusInset);
}

void Look::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                              const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control == CC_ScrollBar) drawFocusFrame(painter, *option, 0);
}

QSize Look::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                             const QWidget* widget) const {
  QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  if (type == CT_ItemViewItem) size.rheight() += RowAir;
  if (type == CT_PushButton) {
    size.setWidth(std::max(size.width(), contents.width() + 2 * ButtonAir));
    size.rheight() += 2 * ButtonAirAbove;
  }
  return size;
}

void dress() {
  QApplication::setStyle(std::make_unique<Look>().release());
  // What a window without a caption of its own is called.
  QApplication::setApplicationName("Trackloom");
  followColourScheme();
  letEditsBeRead();
  letPagesBeRead();
  letNoticesBeRead();
  // It is a drawing, whose reader takes a while to load: the first window stands by then.
  QTimer::singleShot(0, [] { QApplication::setWindowIcon(QIcon(":/trackloom.svg")); });
}

}  // namespace trackloom
