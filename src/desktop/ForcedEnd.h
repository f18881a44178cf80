#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>

namespace trackloom {

/// What ends the program without asking it: the signals TERM, INT and HUP (but for a HUP that its starter has it
/// ignore), with status 0, and the loss of the display, with status 1. Told on the thread of the toolkit's application:
/// for signals from the event loop, for the display in the last moment before the toolkit ends the process. One a
/// process, as long as the application.
class ForcedEnd {
 public:
  using Listener = std::function<void(int status)>;
  explicit ForcedEnd(Listener listener);

 private:
  QSocketNotifier signals_;
  QObject display_;
};

}  // namespace trackloom
