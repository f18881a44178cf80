#pragma once

#include <QFont>
#include <QString>
#include <vector>

#include "desktop/PrintDocument.h"

namespace trackloom {

/// A text broken into the lines of a column, with the blanks at which it was broken; one line at least.
struct CellText {
  std::vector<QString> lines;
  Qt::LayoutDirection direction = Qt::LeftToRight;
  Qt::Alignment alignment = Qt::AlignLeft;

  /// So many lines as the text that they are.
  QString text(std::size_t from, std::size_t count) const;
};

/// Breaks between words where it can, else within one, at a width in twips.
CellText brokenText(const QString& text, const QFont& font, double width);

/// The font for painting in twips, made smaller by the scale.
QFont printFont(const DocumentFont& font, double scale);

/// From one line to the next, in twips.
double lineHeightOf(const QFont& font);

}  // namespace trackloom
