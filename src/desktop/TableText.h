#pragma once

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

namespace trackloom {

/// One column of a table: how its cells stand, and its width in twips.
struct TableColumn {
  Qt::Alignment alignment = Qt::AlignLeft;
  double width = 0;
  bool operator==(const TableColumn&) const = default;
};

/// Reads "+612|+3060|>720;": `+` centres, `>` stands at the right, no mark at the left.
std::vector<TableColumn> columnsOf(const std::string& format);

/// The cells of each row of "01|Anna|Aubade;02|Ben|Dance;". Marks within a text shift its cells; whatever else could
/// break a line becomes a blank.
std::vector<QStringList> rowsOf(const std::string& text);

/// The text in one line: control characters and line ends become blanks.
QString inOneLine(const std::string& text);

}  // namespace trackloom
