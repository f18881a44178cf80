#pragma once

#include <QColor>
#include <QIcon>
#include <QString>
#include <string>
#include <string_view>

#include "controls/ListItem.h"

class QPalette;

namespace trackloom {

/// The text as the toolkit shows it; bytes that are no UTF-8 read as Windows-1252.
QString shown(std::string_view text);
/// What the user entered, as UTF-8.
std::string entered(const QString& text);

/// A caption for a widget that knows no access keys: `&&` becomes one ampersand, any other `&` goes.
QString foldCaption(std::string_view caption);

/// A row's colour on this palette: entries of the system's palette come from it, and others keep their hue but take the
/// lightness that the palette's background asks for. Invalid for plain window text, which follows the row's own state.
QColor shownColour(Colour colour, const QPalette& palette);

/// A dialog's picture or a tool's icon, by its name; empty for a name without a drawing.
QIcon pictureNamed(const std::string& name);
QIcon iconNamed(const std::string& name);
/// An icon for the rows of a list, which a selected row shows in the colour of its text.
QIcon rowIconNamed(const std::string& name);

inline constexpr int TwipsPerPixel = 15;

}  // namespace trackloom
