#pragma once

#include <QPalette>

class QDBusMessage;
class QDBusVariant;

namespace trackloom {

bool isDark(const QPalette& palette);

/// Colours for a dark desktop, whose own are not known.
QPalette darkPalette();

/// The question to the desktop's portal which colours the user prefers (freedesktop.org, `org.freedesktop.appearance`).
QDBusMessage schemeQuestion();
/// Whether the portal's answer, with or without the variant too many in which it comes, is a wish for dark windows.
bool prefersDark(const QDBusVariant& answer);

/// Asks the desktop whether the user wants dark windows, and then gives them where the platform's own palette has not
/// done so. Waits for nothing; where nobody answers, nothing changes.
void followColourScheme();

}  // namespace trackloom
