#include "desktop/TextParts.h"

#include <QTextBoundaryFinder>
#include <algorithm>

namespace trackloom {

namespace {

QTextBoundaryFinder::BoundaryType kindOf(QAccessible::TextBoundaryType boundary) {
  if (boundary == QAccessible::CharBoundary) return QTextBoundaryFinder::Grapheme;
  if (boundary == QAccessible::WordBoundary) return QTextBoundaryFinder::Word;
  return QTextBoundaryFinder::Sentence;
}

TextPart lineAt(const QString& text, int place) {
  const qsizetype start = place == 0 ? 0 : text.lastIndexOf('\n', place - 1) + 1;
  const qsizetype end = text.indexOf('\n', place);
  return {static_cast<int>(start), static_cast<int>(end < 0 ? text.size() : end + 1)};
}

}  // namespace

TextPart partAt(const QString& text, int place, QAccessible::TextBoundaryType boundary) {
  const int length = static_cast<int>(text.size());
  if (place < 0 || place >= length) return {length, length};
  if (boundary == QAccessible::NoBoundary) return {0, length};
  if (boundary >= QAccessible::ParagraphBoundary) return lineAt(text, place);
  QTextBoundaryFinder finder(kindOf(boundary), text);
  finder.setPosition(place);
  const qsizetype start = finder.isAtBoundary() ? place : finder.toPreviousBoundary();
  finder.setPosition(place);
  const qsizetype end = finder.toNextBoundary();
  return {static_cast<int>(std::max<qsizetype>(start, 0)), end < 0 ? length : static_cast<int>(end)};
}

}  // namespace trackloom
