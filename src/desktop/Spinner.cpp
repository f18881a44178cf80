#include "desktop/Spinner.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

namespace trackloom {

namespace {

/// An arrow that a hand hits without aiming, in device-independent pixels.
constexpr int ArrowWidth = 32;
constexpr int ArrowHeight = 24;
constexpr int ArrowMark = 10;

}  // namespace

Spinner::Spinner(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {
  setFocusPolicy(Qt::StrongFocus);
  setInvertedControls(false);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Spinner::sizeHint() const {
  return {ArrowWidth, 2 * ArrowHeight};
}

QRect Spinner::placeOf(SliderAction step) const {
  const int top = step == SliderSingleStepAdd ? 0 : height() / 2;
  return {0, top, width(), height() / 2};
}

void Spinner::drawArrow(QPainter& painter, SliderAction step, bool possible) const {
  QStyleOption option;
  option.initFrom(this);
  option.state.setFlag(QStyle::State_Enabled, isEnabled() && possible);
  option.state.setFlag(QStyle::State_Sunken, repeatAction() == step);
  option.state.setFlag(QStyle::State_Raised, repeatAction() != step);
  option.rect = placeOf(step);
  style()->drawPrimitive(QStyle::PE_PanelButtonTool, &option, &painter, this);
  QRect mark(0, 0, ArrowMark, ArrowMark);
  mark.moveCenter(option.rect.center());
  option.rect = mark;
  const bool up = step == SliderSingleStepAdd;
  style()->drawPrimitive(up ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown, &option, &painter, this);
}

void Spinner::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawArrow(painter, SliderSingleStepAdd, value() < maximum());
  drawArrow(painter, SliderSingleStepSub, value() > minimum());
  if (!hasFocus()) return;
  painter.setPen(palette().color(QPalette::Highlight));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void Spinner::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const bool upper = placeOf(SliderSingleStepAdd).contains(event->position().toPoint());
  const SliderAction step = upper ? SliderSingleStepAdd : SliderSingleStepSub;
  triggerAction(step);
  setRepeatAction(step);
  update();
}

void Spinner::mouseMoveEvent(QMouseEvent* /*event*/) {}

void Spinner::mouseReleaseEvent(QMouseEvent* /*event*/) {
  setRepeatAction(SliderNoAction);
  update();
}

void Spinner::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
}

}  // namespace trackloom
