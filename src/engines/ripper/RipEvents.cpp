#include "engines/ripper/RipEvents.h"

#include <utility>

#include "engines/ripper/RipRequest.h"

namespace trackloom::engines::ripper {

namespace {

/// Runs at the end of a block, however that is left.
template <class Action>
struct AtEnd {
  Action action;
  explicit AtEnd(Action what) : action(std::move(what)) {}
  ~AtEnd() { action(); }
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;
};

RipEvents::Tell statusEvent(std::int32_t code, std::int32_t value) {
  return [code, value](CDRipperEvents& listener) { listener.RipStatus(code, value); };
}

}  // namespace

RipEvents::RipEvents(EventQueue& queue, std::shared_ptr<RipListener> listener)
    : queue_(queue), listener_(std::move(listener)) {}

void RipEvents::raise(Tell tell, Then then) {
  Event event{std::move(tell), std::move(then)};
  {
    const Lock lock(mutex_);
    if (state_ == State::Open) return push(std::move(event));
  }
  if (event.then) event.then(EventFate::Dropped);
}

void RipEvents::status(std::int32_t code, std::int32_t value) {
  raise(statusEvent(code, value));
}

void RipEvents::progress(std::int32_t sector) {
  const Lock lock(mutex_);
  if (state_ != State::Open) return;
  if (!events_.empty() && events_.back().kind == Kind::Position) events_.pop_back();
  push({statusEvent(status::progress, sector), {}, Kind::Position});
}

void RipEvents::finish() {
  const Lock lock(mutex_);
  if (state_ == State::Finished) return;
  state_ = State::Finished;
  push({[](CDRipperEvents& listener) { listener.RipFinished(); }, {}, Kind::End});
}

void RipEvents::cut(std::int32_t code) {
  std::deque<Event> dropped;
  {
    const Lock lock(mutex_);
    if (state_ != State::Open) return;
    state_ = State::Cut;
    dropped.swap(events_);
    if (!begun_ && !dropped.empty()) {
      push(std::move(dropped.front()));
      dropped.pop_front();
    }
    push({statusEvent(code, 0), {}});
  }
  drop(std::move(dropped));
}

void RipEvents::silence() {
  std::deque<Event> dropped;
  {
    const Lock lock(mutex_);
    state_ = State::Finished;
    dropped.swap(events_);
  }
  over_ = true;
  drop(std::move(dropped));
}

void RipEvents::drop(std::deque<Event> events) {
  for (const Event& event : events)
    if (event.then) event.then(EventFate::Dropped);
}

void RipEvents::push(Event event) {
  events_.push_back(std::move(event));
  if (!posted_) post();
}

void RipEvents::post() {
  posted_ = true;
  queue_.post([self = shared_from_this()] { self->deliver(); });
}

/// One event at a time, and the next is posted only when its handler has returned: so none comes inside another.
void RipEvents::deliver() {
  Event event;
  {
    const Lock lock(mutex_);
    posted_ = !events_.empty();
    if (!posted_) return;
    event = std::move(events_.front());
    events_.pop_front();
    begun_ = true;
  }
  const AtEnd next([this] {
    const Lock lock(mutex_);
    posted_ = false;
    if (!events_.empty()) post();
  });
  tell(event);
}

void RipEvents::tell(const Event& event) {
  if (event.kind == Kind::End) over_ = true;
  CDRipperEvents* listener = listener_->who;
  const AtEnd settled([&] {
    if (event.then) event.then(listener != nullptr ? EventFate::Told : EventFate::Unheard);
  });
  if (listener != nullptr) event.tell(*listener);
}

}  // namespace trackloom::engines::ripper
