#include "desktop/SelectableText.h"

#include <QTextDocument>
#include <cmath>
#include <memory>

namespace trackloom {

namespace {

constexpr int LeastCharacters = 24;
constexpr int LineCharacters = 64;

}  // namespace

SelectableText::SelectableText(QWidget* parent) : QTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setFrameShape(QFrame::NoFrame);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  document()->setDocumentMargin(0);
  viewport()->setAutoFillBackground(false);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

QSize SelectableText::sizeHint() const {
  const int width = LineCharacters * fontMetrics().averageCharWidth();
  return {width, heightForWidth(width)};
}

QSize SelectableText::minimumSizeHint() const {
  return {LeastCharacters * fontMetrics().averageCharWidth(), fontMetrics().height()};
}

int SelectableText::heightForWidth(int width) const {
  const std::unique_ptr<QTextDocument> laidOut(document()->clone());
  laidOut->setTextWidth(width);
  return static_cast<int>(std::ceil(laidOut->size().height()));
}

}  // namespace trackloom
