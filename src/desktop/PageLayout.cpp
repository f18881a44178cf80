#include "desktop/PageLayout.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "desktop/CellText.h"
#include "desktop/TableText.h"

namespace trackloom {

namespace {

constexpr double OwnMargin = 720;
/// Between a cell's frame and its text.
constexpr double PadAcross = 60;
constexpr double PadAbove = 30;
/// Between the title and the table, and the table and the footer, in lines of the header's font.
constexpr double GapLines = 0.6;
/// However long a title is, it leaves the page to the table.
constexpr double MostOfPage = 0.25;

double widthOf(const std::vector<TableColumn>& columns) {
  double width = 0;
  for (const TableColumn& column : columns) width += column.width;
  return width;
}

double widestTable(const PrintDocument& document) {
  double widest = 0;
  for (const DocumentTable& table : document.tables) widest = std::max(widest, widthOf(columnsOf(table.format)));
  return widest;
}

/// How much smaller a document becomes so that its table fits between the margins.
double scaleFor(const PrintDocument& document, const QSizeF& paper) {
  const double room = paper.width() - 2 * OwnMargin;
  const double widest = widestTable(document);
  return document.margins.any() || widest <= room ? 1 : std::max(room, 1.0) / widest;
}

QColor colourOf(std::int32_t colour) {
  return {colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF};
}

/// Parts or cells as one reads them out.
QString inWords(QStringList texts) {
  texts.removeAll(QString());
  return texts.join(", ");
}

/// A row whose cells are broken into lines, of which the first ones may stand on pages before.
struct BrokenRow {
  std::vector<CellText> cells;
  QColor fill;
  std::size_t from = 0;

  std::size_t lines() const {
    std::size_t most = 1;
    for (const CellText& cell : cells) most = std::max(most, cell.lines.size());
    return most - from;
  }
};

/// Puts a document onto page after page, from the top to the bottom of each.
class Layout {
 public:
  Layout(const PrintDocument& document, const QSizeF& paper);
  std::vector<PrintedPage> run();

 private:
  void addPage();
  void addTitle();
  void addFooters();
  double titleHeight(const CellText& part) const;
  void addParts(PrintedPage& page, const QStringList& parts, double top, double height) const;
  void addTable(const DocumentTable& table);
  BrokenRow broken(const QStringList& cells, const QColor& fill) const;
  void addRow(BrokenRow row);
  /// As many of the row's lines as that, on the page as it stands.
  void addLines(const BrokenRow& row, std::size_t count);
  void addCell(const CellText& cell, const QRectF& place, std::size_t from, std::size_t count, const QColor& fill);

  double heightOf(std::size_t lines) const { return static_cast<double>(lines) * lineHeight_ + 2 * PadAbove * scale_; }
  std::size_t linesInto(double height) const;

  const PrintDocument& document_;
  const QSizeF paper_;
  const double scale_;
  const QFont font_;
  const QFont headerFont_;
  const double lineHeight_;
  const double headerLine_;
  QRectF body_;
  double next_ = 0;
  std::vector<TableColumn> columns_;
  std::vector<PrintedPage> pages_;
};

QRectF bodyOf(const DocumentMargins& margins, const QSizeF& paper) {
  const double left = margins.left.value_or(OwnMargin);
  const double top = margins.top.value_or(OwnMargin);
  const double right = paper.width() - margins.right.value_or(OwnMargin);
  return {left, top, std::max(right - left, 1.0), std::max(paper.height() - OwnMargin - top, 1.0)};
}

Layout::Layout(const PrintDocument& document, const QSizeF& paper)
    : document_(document),
      paper_(paper),
      scale_(scaleFor(document, paper)),
      font_(printFont(document.font, scale_)),
      headerFont_(printFont(document.headerFont, scale_)),
      lineHeight_(lineHeightOf(font_)),
      headerLine_(lineHeightOf(headerFont_)),
      body_(bodyOf(document.margins, paper)) {
  const double footer = document.footer.empty() ? 0 : headerLine_ * (1 + GapLines);
  body_.setHeight(std::max(body_.height() - footer, 1.0));
}

std::vector<PrintedPage> Layout::run() {
  addPage();
  for (const DocumentTable& table : document_.tables) addTable(table);
  addFooters();
  return std::move(pages_);
}

void Layout::addPage() {
  pages_.push_back({paper_, {}, {}, {}});
  next_ = body_.top();
  addTitle();
}

void Layout::addTitle() {
  const QStringList parts = inOneLine(document_.header).split('|');
  double height = 0;
  for (const QString& part : parts)
    height = std::max(height, titleHeight(brokenText(part, headerFont_, body_.width())));
  if (height == 0) return;
  addParts(pages_.back(), parts, next_, height);
  next_ += height + headerLine_ * GapLines;
}

double Layout::titleHeight(const CellText& part) const {
  const double wanted = static_cast<double>(part.lines.size()) * headerLine_;
  const double most = std::max(std::floor(body_.height() * MostOfPage / headerLine_), 1.0) * headerLine_;
  return part.lines.front().isEmpty() ? 0 : std::min(wanted, most);
}

/// The left, the centred and the right part of a title or a footer.
void Layout::addParts(PrintedPage& page, const QStringList& parts, double top, double height) const {
  page.words.push_back({inWords(parts), {body_.left(), top, body_.width(), height}});
  constexpr Qt::AlignmentFlag Places[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
  for (qsizetype part = 0; part < std::min<qsizetype>(parts.size(), std::size(Places)); ++part) {
    const CellText text = brokenText(parts[part], headerFont_, body_.width());
    double y = top;
    for (const QString& line : text.lines) {
      if (line.isEmpty() || y + headerLine_ > top + height + 1) break;
      page.lines.push_back({{body_.left(), y, body_.width(), headerLine_},
                            line.trimmed(),
                            Places[part],
                            text.direction,
                            headerFont_,
                            Qt::black});
      y += headerLine_;
    }
  }
}

void Layout::addFooters() {
  if (document_.footer.empty()) return;
  const double top = body_.bottom() + headerLine_ * GapLines;
  int number = 0;
  for (PrintedPage& page : pages_) {
    const QString footer = inOneLine(document_.footer).replace("%d", QString::number(++number));
    addParts(page, footer.split('|'), top, headerLine_);
  }
}

void Layout::addTable(const DocumentTable& table) {
  columns_ = columnsOf(table.format);
  for (TableColumn& column : columns_) column.width *= scale_;
  for (const QStringList& cells : rowsOf(table.header)) addRow(broken(cells, colourOf(table.headerColour)));
  for (const std::string& row : table.rows)
    for (const QStringList& cells : rowsOf(row)) addRow(broken(cells, {}));
}

/// Cells beyond the columns have no place, and columns beyond the cells are empty.
BrokenRow Layout::broken(const QStringList& cells, const QColor& fill) const {
  BrokenRow row{{}, fill};
  for (std::size_t column = 0; column < columns_.size(); ++column)
    row.cells.push_back(brokenText(cells.value(static_cast<qsizetype>(column)), font_,
                                   columns_[column].width - 2 * PadAcross * scale_));
  return row;
}

std::size_t Layout::linesInto(double height) const {
  return static_cast<std::size_t>(std::max((height - 2 * PadAbove * scale_) / lineHeight_, 0.0));
}

void Layout::addRow(BrokenRow row) {
  if (next_ + heightOf(row.lines()) > body_.bottom() && !pages_.back().cells.empty()) addPage();
  while (row.lines() > 0) {
    const std::size_t fitting = std::max<std::size_t>(linesInto(body_.bottom() - next_), 1);
    const std::size_t count = std::min(fitting, row.lines());
    addLines(row, count);
    row.from += count;
    if (row.lines() > 0) addPage();
  }
}

void Layout::addLines(const BrokenRow& row, std::size_t count) {
  QRectF place(body_.left(), next_, 0, heightOf(count));
  QStringList words;
  for (std::size_t column = 0; column < columns_.size(); ++column) {
    place.setWidth(columns_[column].width);
    CellText cell = row.cells[column];
    cell.alignment = columns_[column].alignment;
    addCell(cell, place, row.from, count, row.fill);
    words << cell.text(row.from, count);
    place.moveLeft(place.right());
  }
  pages_.back().words.push_back({inWords(words), {body_.left(), next_, widthOf(columns_), place.height()}});
  next_ += place.height();
}

void Layout::addCell(const CellText& cell, const QRectF& place, std::size_t from, std::size_t count,
                     const QColor& fill) {
  PrintedPage& page = pages_.back();
  page.cells.push_back({place, fill});
  const double pad = PadAcross * scale_;
  const std::size_t end = std::min(from + count, cell.lines.size());
  for (std::size_t line = from; line < end; ++line) {
    const double top = place.top() + PadAbove * scale_ + static_cast<double>(line - from) * lineHeight_;
    page.lines.push_back({{place.left() + pad, top, place.width() - 2 * pad, lineHeight_},
                          cell.lines[line].trimmed(),
                          cell.alignment,
                          cell.direction,
                          font_,
                          fill.isValid() ? inkOn(fill) : QColor(Qt::black)});
  }
}

}  // namespace

QColor inkOn(const QColor& fill) {
  // Relative luminance after WCAG 2.1; at this one white and black stand out alike.
  constexpr double Middle = 0.179;
  const auto linear = [](double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  const double luminance =
      0.2126 * linear(fill.redF()) + 0.7152 * linear(fill.greenF()) + 0.0722 * linear(fill.blueF());
  return luminance > Middle ? Qt::black : Qt::white;
}

std::vector<PrintedPage> layOut(const PrintDocument& document, const QSizeF& paper) {
  return Layout(document, paper).run();
}

void PrintedPage::paint(QPainter& painter) const {
  constexpr double Hairline = 8;
  for (const PrintedCell& cell : cells) {
    painter.setPen(QPen(QColor(0x60, 0x60, 0x60), Hairline));
    painter.setBrush(cell.fill.isValid() ? QBrush(cell.fill) : QBrush(Qt::NoBrush));
    painter.drawRect(cell.place);
  }
  for (const PrintedLine& line : lines) {
    painter.setPen(line.ink);
    painter.setFont(line.font);
    painter.setLayoutDirection(line.direction);
    painter.drawText(line.place,
                     static_cast<int>(line.alignment | Qt::AlignAbsolute | Qt::AlignVCenter) | Qt::TextSingleLine |
                         Qt::TextDontClip | Qt::TextIncludeTrailingSpaces,
                     line.text);
  }
}

}  // namespace trackloom
