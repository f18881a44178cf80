#include "desktop/Entry.h"

#include <QMetaObject>

#include "desktop/Face.h"
#include "desktop/QtDesk.h"

namespace trackloom {

void Entry::operator()(const std::function<void()>& event) const {
  const auto face = face_.lock();
  if (!face || !face->live()) return;
  const auto form = face->form()->keepAlive();
  face->desk().enter(event);
}

void Entry::byItself(std::function<void()> event) const {
  const auto face = face_.lock();
  if (face) face->desk().perform([entry = *this, event = std::move(event)] { entry(event); });
}

void Entry::later(std::function<void()> event) const {
  const auto face = face_.lock();
  if (!face) return;
  QMetaObject::invokeMethod(
      &face->window(), [entry = *this, event = std::move(event)] { entry.byItself(event); }, Qt::QueuedConnection);
}

}  // namespace trackloom
