#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace trackloom {

/// A font by name, the control's own one where that is empty, and size in points.
struct DocumentFont {
  std::string name;
  double size = 10;
};

/// A table in the marks of the print control: columns, header and rows.
struct DocumentTable {
  std::string format;
  std::string header;
  /// 0xBBGGRR.
  std::int32_t headerColour = 0xFFFFFF;
  std::vector<std::string> rows;
};

/// The margins that the program has set, in twips. They put the document onto a form of its own, a card for instance.
struct DocumentMargins {
  std::optional<double> left, top, right;
  bool any() const { return left || top || right; }
};

/// What the print control has been told, before it lies on any page.
struct PrintDocument {
  DocumentFont font, headerFont;
  std::string header, footer;
  DocumentMargins margins;
  std::vector<DocumentTable> tables;
};

}  // namespace trackloom
