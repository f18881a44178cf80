#pragma once

#include <QRect>
#include <vector>

namespace trackloom {

/// The place nearest to its own at which the frame lies wholly within `screen`. One that is larger has its upper left
/// corner there, where its title is.
QPoint placeWithin(const QRect& frame, const QRect& screen);

/// Where a window is to stand so that it can be grasped: its own place while any part of its title bar, so many pixels
/// high, lies on one of the screens, else the nearest place on the nearest of them. Without screens it stays.
QPoint graspablePlace(const QRect& frame, int titleHeight, const std::vector<QRect>& screens);

}  // namespace trackloom
