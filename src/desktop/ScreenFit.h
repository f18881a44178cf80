#pragma once

#include <QSize>

class QRect;
class QWidget;

namespace trackloom {

/// Brings a dialog within `most` pixels where its contents need more: its lists give way first, and what still does not
/// fit scrolls. Its last rows, which hold its buttons, stay in sight. A dialog that fits stays as it is.
void fitInto(QWidget& dialog, const QSize& most);

/// Lets a window become as small as `most` where its design asks for more.
void giveWay(QWidget& window, const QSize& most);

/// What the window system will put around a window, about.
QSize frameOf(const QWidget& window);

/// The most that a dialog may take on its screen, inside its frame.
QSize roomFor(const QWidget& dialog);

/// Where a window lies, frame and all; a maximised one on the whole room of its screen, though the window system may
/// not have given it yet.
QRect placeOf(const QWidget& window);

/// Moves a dialog, frame and all, to the centre of `around`, or as near as its screen lets it be.
void centreOver(QWidget& dialog, const QRect& around);

}  // namespace trackloom
