#include "desktop/ScreenPlace.h"

#include <algorithm>
#include <cstdint>

namespace trackloom {

namespace {

int nearestStart(int start, int length, int first, int room) {
  return std::max(first, std::min(start, first + room - length));
}

std::int64_t squaredDistance(const QPoint& a, const QPoint& b) {
  const std::int64_t x = std::int64_t{a.x()} - b.x();
  const std::int64_t y = std::int64_t{a.y()} - b.y();
  return x * x + y * y;
}

}  // namespace

QPoint placeWithin(const QRect& frame, const QRect& screen) {
  return {nearestStart(frame.x(), frame.width(), screen.x(), screen.width()),
          nearestStart(frame.y(), frame.height(), screen.y(), screen.height())};
}

QPoint graspablePlace(const QRect& frame, int titleHeight, const std::vector<QRect>& screens) {
  const QRect title(frame.topLeft(), QSize(frame.width(), titleHeight));
  const auto shows = [&](const QRect& screen) { return screen.intersects(title); };
  if (screens.empty() || std::any_of(screens.begin(), screens.end(), shows)) return frame.topLeft();
  const auto wayTo = [&](const QRect& screen) { return squaredDistance(placeWithin(title, screen), title.topLeft()); };
  return placeWithin(frame, *std::min_element(screens.begin(), screens.end(),
                                              [&](const QRect& a, const QRect& b) { return wayTo(a) < wayTo(b); }));
}

}  // namespace trackloom
