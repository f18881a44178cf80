#include "desktop/CellText.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr double TwipsPerPoint = 20;

}  // namespace

QString CellText::text(std::size_t from, std::size_t count) const {
  QString whole;
  for (std::size_t line = from; line < std::min(from + count, lines.size()); ++line) whole += lines[line];
  return whole.trimmed();
}

CellText brokenText(const QString& text, const QFont& font, double width) {
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  CellText broken;
  broken.direction = text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
  layout.beginLayout();
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(std::max(width, 1.0));
    broken.lines.push_back(text.mid(line.textStart(), line.textLength()));
  }
  layout.endLayout();
  if (broken.lines.empty()) broken.lines.emplace_back();
  return broken;
}

QFont printFont(const DocumentFont& font, double scale) {
  QFont made = font.name.empty() ? QFontDatabase::systemFont(QFontDatabase::GeneralFont) : QFont(shown(font.name));
  made.setPixelSize(std::max(static_cast<int>(std::lround(font.size * TwipsPerPoint * scale)), 1));
  // Letters of the size of twips are set as they were drawn, alike on the screen and on paper.
  made.setHintingPreference(QFont::PreferNoHinting);
  return made;
}

double lineHeightOf(const QFont& font) {
  return std::ceil(QFontMetricsF(font).height());
}

}  // namespace trackloom
