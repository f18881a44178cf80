#include "desktop/ForcedEnd.h"

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <semaphore>

#include "desktop/EventTap.h"
#include "desktop/Make.h"

namespace trackloom {

namespace {

constexpr auto DisplayLost = static_cast<QEvent::Type>(QEvent::User + 1);

/// From the handler of signals to the event loop; open for the life of the process.
const std::array<int, 2>& signalPipe() {
  static const std::array<int, 2> pipe = [] {
    std::array<int, 2> ends{-1, -1};
    return ::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) == 0 ? ends : std::array{-1, -1};
  }();
  return pipe;
}

/// Does nothing but what a handler of signals may.
void passOn(int /*signal*/) {
  const int before = errno;
  [[maybe_unused]] const ssize_t written = ::write(signalPipe()[1], "x", 1);
  errno = before;
}

void catchSignal(int signal) {
  struct sigaction before {
  }, caught{};
  ::sigaction(signal, nullptr, &before);
  if (signal == SIGHUP && before.sa_handler == SIG_IGN) return;
  caught.sa_handler = passOn;
  caught.sa_flags = SA_RESTART;
  ::sigaction(signal, &caught, nullptr);
}

constexpr const char* ListenerName = "ForcedEnd";
/// A program that has no window any more may take its time, but not for ever.
constexpr std::chrono::seconds Patience(30);

void tellOfLostDisplay();

/// On a thread of the toolkit's, which is about to end the process: leaves that to the program.
void awaitTelling() {
  const auto told = std::make_shared<std::binary_semaphore>(0);
  const auto tell = [told] {
    tellOfLostDisplay();
    told->release();
  };
  QMetaObject::invokeMethod(qApp, tell, Qt::QueuedConnection);
  [[maybe_unused]] const bool inTime = told->try_acquire_for(Patience);
}

/// Neither a message nor the end of a process says whom it concerns, so the listener is looked up.
void tellOfLostDisplay() {
  if (qApp == nullptr) return;
  if (QThread::currentThread() != qApp->thread()) return awaitTelling();
  QEvent lost(DisplayLost);
  if (auto* listener = qApp->findChild<QObject*>(ListenerName)) QCoreApplication::sendEvent(listener, &lost);
}

void hearMessage(QtMsgType type, const QMessageLogContext& context, const QString& message);

QtMessageHandler messagesBefore() {
  static const QtMessageHandler before = qInstallMessageHandler(hearMessage);
  return before;
}

/// With these words the toolkit gives its display up; then it ends the process, without a compositor on the spot.
void hearMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  messagesBefore()(type, context, message);
  if (message.startsWith("The X11 connection broke") || message.startsWith("The Wayland connection "))
    tellOfLostDisplay();
}

}  // namespace

ForcedEnd::ForcedEnd(Listener listener) : signals_(signalPipe()[0], QSocketNotifier::Read) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) catchSignal(signal);
  QObject::connect(&signals_, &QSocketNotifier::activated, &signals_, [listener] {
    std::array<char, 16> told;
    while (::read(signalPipe()[0], told.data(), told.size()) > 0) continue;
    listener(0);
  });
  display_.setParent(qApp);
  display_.setObjectName(ListenerName);
  make<EventTap>(display_, [listener](QEvent& event) {
    if (event.type() == DisplayLost) listener(1);
    return event.type() == DisplayLost;
  });
  messagesBefore();
  // Where those words should be others one day, parts of the toolkit have gone by now, but the layout comes first.
  std::atexit(tellOfLostDisplay);
}

}  // namespace trackloom
