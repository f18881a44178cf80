#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "ports/CDRipperX.h"
#include "ports/EventQueue.h"

namespace trackloom::engines::ripper {

/// Who listens to an instance of the engine; belongs to the UI thread.
struct RipListener {
  CDRipperEvents* who = nullptr;
};

/// What became of an event: its handler has returned, nobody was there to hear it, or it was never told.
enum class EventFate { Told, Unheard, Dropped };

/// The way of one rip's events from its threads to the listener, one after the other: while a handler runs, later ones
/// wait, whatever the handler lets in. Only raise(), progress() and finish() may be called from other threads than the
/// UI's.
class RipEvents : public std::enable_shared_from_this<RipEvents> {
 public:
  using Tell = std::function<void(CDRipperEvents&)>;
  using Then = std::function<void(EventFate)>;

  /// `queue` must outlive the rip.
  RipEvents(EventQueue& queue, std::shared_ptr<RipListener> listener);

  /// `then` is called once, on the UI thread or inside the call that drops the event.
  void raise(Tell tell, Then then = {});
  void status(std::int32_t code, std::int32_t value);
  /// A position that nobody has heard yet gives way to the next.
  void progress(std::int32_t sector);
  /// The last event. Only the first call counts.
  void finish();

  /// What has not been told is dropped, but for the rip's first event, and nothing but the end is told any more.
  void cut(std::int32_t code);
  /// Nothing is told any more, not even the end.
  void silence();
  /// The end has been told, or is never told. To be asked on the UI thread.
  bool over() const { return over_; }

 private:
  enum class Kind { Any, Position, End };
  struct Event {
    Tell tell;
    Then then;
    Kind kind = Kind::Any;
  };
  enum class State { Open, Cut, Finished };
  using Lock = std::unique_lock<std::mutex>;

  void push(Event event);
  void post();
  void deliver();
  void tell(const Event& event);
  void drop(std::deque<Event> events);

  EventQueue& queue_;
  std::shared_ptr<RipListener> listener_;
  mutable std::mutex mutex_;
  State state_ = State::Open;
  std::deque<Event> events_;
  bool posted_ = false;
  bool begun_ = false;
  bool over_ = false;
};

}  // namespace trackloom::engines::ripper
