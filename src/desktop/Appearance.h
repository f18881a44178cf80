#pragma once

#include <QPalette>

namespace trackloom {

bool isDark(const QPalette& palette);

/// Colours for a dark desktop, whose own are not known.
QPalette darkPalette();

/// Asks the desktop whether the user wants dark windows (freedesktop.org portal, `org.freedesktop.appearance`), and
/// then gives them where the platform's own palette has not done so. Waits for nothing; where nobody answers, nothing
/// changes.
void followColourScheme();

}  // namespace trackloom
