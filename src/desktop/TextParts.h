#pragma once

#include <QAccessible>
#include <QString>

namespace trackloom {

/// From the start of a part of a text to the start of the next.
struct TextPart {
  int start = 0;
  int end = 0;
};

/// The part around the place, as screen readers ask for it; each line of the text is a paragraph. Nothing is at the end
/// of the text.
TextPart partAt(const QString& text, int place, QAccessible::TextBoundaryType boundary);

}  // namespace trackloom
