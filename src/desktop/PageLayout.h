#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <vector>

#include "desktop/PrintDocument.h"

class QPainter;

namespace trackloom {

/// One line of text on a page: its place in twips, and how it stands there.
struct PrintedLine {
  QRectF place;
  QString text;
  Qt::Alignment alignment = Qt::AlignLeft;
  Qt::LayoutDirection direction = Qt::LeftToRight;
  QFont font;
  QColor ink = Qt::black;
};

/// One cell of a table without its text: framed, and filled where it has a colour.
struct PrintedCell {
  QRectF place;
  QColor fill;
};

/// One line of what a page says: its title, a row, its footer.
struct PrintedWords {
  QString text;
  QRectF place;
};

/// One page of a document, in twips from the upper left corner of its paper.
struct PrintedPage {
  QSizeF paper;
  std::vector<PrintedCell> cells;
  std::vector<PrintedLine> lines;
  /// For those who listen to it.
  std::vector<PrintedWords> words;

  /// Painted with one twip of the paper as the painter's unit.
  void paint(QPainter& painter) const;
};

/// Lays a document out on paper of this size in twips. Everything lies between the margins. Header and footer stand on
/// every page; a cell's text wraps within its column; a row that does not fit goes to the next page, and only one that
/// fits on none goes on there. A document with margins of its own keeps its widths, its right margin giving way; any
/// other is made smaller as a whole where its table is wider than the page has room for. There is always a page.
std::vector<PrintedPage> layOut(const PrintDocument& document, const QSizeF& paper);

/// White or black, whichever is read better on the colour.
QColor inkOn(const QColor& fill);

}  // namespace trackloom
