#include "desktop/TableText.h"

#include <algorithm>

#include "desktop/Shown.h"

namespace trackloom {

namespace {

bool breaksLines(QChar character) {
  return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator;
}

TableColumn columnOf(QStringView text) {
  TableColumn column;
  if (text.startsWith(u'+')) column.alignment = Qt::AlignHCenter;
  if (text.startsWith(u'>')) column.alignment = Qt::AlignRight;
  const bool marked = column.alignment != Qt::AlignLeft;
  column.width = std::max(text.mid(marked ? 1 : 0).toDouble(), 0.0);
  return column;
}

/// What stands before each ";"; a rest without one counts too.
QStringList rowTexts(const QString& text) {
  QStringList rows = text.split(';');
  if (rows.back().isEmpty()) rows.pop_back();
  return rows;
}

}  // namespace

QString inOneLine(const std::string& text) {
  QString line = shown(text);
  std::replace_if(line.begin(), line.end(), breaksLines, QChar(u' '));
  return line;
}

std::vector<TableColumn> columnsOf(const std::string& format) {
  std::vector<TableColumn> columns;
  const QString text = shown(format).section(';', 0, 0);
  for (const QString& column : text.split('|')) columns.push_back(columnOf(column));
  return columns;
}

std::vector<QStringList> rowsOf(const std::string& text) {
  std::vector<QStringList> rows;
  for (const QString& row : rowTexts(inOneLine(text))) rows.push_back(row.split('|'));
  return rows;
}

}  // namespace trackloom
