#pragma once

#include <QEvent>
#include <QObject>
#include <functional>

namespace trackloom {

/// Sees the events of an object before the object does; the answer true keeps the event from it. The object owns it.
class EventTap final : public QObject {
 public:
  using Listener = std::function<bool(QEvent&)>;

  EventTap(Listener listener, QObject* tapped) : QObject(tapped), listener_(std::move(listener)) {
    tapped->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* /*tapped*/, QEvent* event) override { return listener_(*event); }

 private:
  Listener listener_;
};

}  // namespace trackloom
