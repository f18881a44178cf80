#include "desktop/ParagraphButton.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <algorithm>
#include <type_traits>

namespace trackloom {

namespace {

constexpr int TextFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextShowMnemonic;
/// A comfortable line, in average characters.
constexpr int LineCharacters = 64;
constexpr int LeastCharacters = 24;
constexpr int AnyHeight = 10000;
/// Between the caption and the frame that shows the focus.
constexpr int FocusMargin = 2;

template <class Button>
constexpr bool IsRadio = std::is_same_v<Button, QRadioButton>;

}  // namespace

template <class Button>
ParagraphButton<Button>::ParagraphButton(QWidget* parent) : Button(parent) {
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  this->setSizePolicy(policy);
}

template <class Button>
int ParagraphButton<Button>::markSide() const {
  const auto metric = IsRadio<Button> ? QStyle::PM_ExclusiveIndicatorHeight : QStyle::PM_IndicatorHeight;
  return this->style()->pixelMetric(metric, nullptr, this);
}

template <class Button>
int ParagraphButton<Button>::textLeft() const {
  const auto metric = IsRadio<Button> ? QStyle::PM_RadioButtonLabelSpacing : QStyle::PM_CheckBoxLabelSpacing;
  return markSide() + this->style()->pixelMetric(metric, nullptr, this) + FocusMargin;
}

template <class Button>
int ParagraphButton<Button>::heightForWidth(int width) const {
  const QRect room(0, 0, width - textLeft() - FocusMargin, AnyHeight);
  const int text = this->fontMetrics().boundingRect(room, TextFlags, this->text()).height();
  return std::max(markSide(), text) + 2 * FocusMargin;
}

template <class Button>
QSize ParagraphButton<Button>::sizeHint() const {
  const int width = textLeft() + LineCharacters * this->fontMetrics().averageCharWidth();
  return {width, heightForWidth(width)};
}

template <class Button>
QSize ParagraphButton<Button>::minimumSizeHint() const {
  const int width = textLeft() + LeastCharacters * this->fontMetrics().averageCharWidth();
  return {width, this->fontMetrics().height() + 2 * FocusMargin};
}

template <class Button>
void ParagraphButton<Button>::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  QStyleOptionButton option;
  this->initStyleOption(&option);
  const int firstLine = std::max(markSide(), this->fontMetrics().height());
  QStyleOptionButton mark = option;
  mark.rect = QRect(0, FocusMargin + (firstLine - markSide()) / 2, markSide(), markSide());
  const auto primitive = IsRadio<Button> ? QStyle::PE_IndicatorRadioButton : QStyle::PE_IndicatorCheckBox;
  this->style()->drawPrimitive(primitive, &mark, &painter, this);
  const QRect words = this->rect().adjusted(textLeft(), FocusMargin, -FocusMargin, -FocusMargin);
  this->style()->drawItemText(&painter, words, TextFlags, option.palette, this->isEnabled(), option.text,
                              QPalette::WindowText);
  if (!option.state.testFlag(QStyle::State_HasFocus)) return;
  QStyleOptionFocusRect focus;
  focus.QStyleOption::operator=(option);
  focus.rect = words.adjusted(-FocusMargin, -FocusMargin, FocusMargin, FocusMargin);
  this->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

template class ParagraphButton<QRadioButton>;
template class ParagraphButton<QCheckBox>;

}  // namespace trackloom
