#include "desktop/ForcedEnd.h"

#include <QApplication>
#include <QThread>
#include <array>
#include <atomic>
#include <catch2/catch.hpp>
#include <csignal>
#include <thread>
#include <vector>

#include "desktop/QtEvents.h"
#include "desktop/Trial.h"

namespace trackloom {

using trial::comesTrue;

namespace {

/// Gives a signal back the disposition that it had before the test.
class Disposition {
 public:
  explicit Disposition(int signal) : signal_(signal) { ::sigaction(signal, nullptr, &before_); }
  ~Disposition() { ::sigaction(signal_, &before_, nullptr); }
  Disposition(const Disposition&) = delete;
  Disposition& operator=(const Disposition&) = delete;

 private:
  int signal_;
  struct sigaction before_ {};
};

/// What a forced end has told, in a process that is left as it was.
struct Told {
  const std::array<Disposition, 3> before{Disposition(SIGTERM), Disposition(SIGINT), Disposition(SIGHUP)};
  std::vector<int> statuses;
};

}  // namespace

TEST_CASE("Each signal that ends programs is told from the event loop, with status 0") {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    Told told;
    std::signal(SIGINT, SIG_IGN);
    // Whoever runs the tests may be to outlive his terminal, and hands that down.
    std::signal(SIGHUP, SIG_DFL);
    const ForcedEnd forcedEnd([&](int status) { told.statuses.push_back(status); });
    std::raise(signal);
    std::raise(signal);
    CHECK(told.statuses.empty());
    CHECK(comesTrue([&] { return !told.statuses.empty(); }));
    QtEventPump().pumpEvents();
    CHECK(told.statuses == std::vector{0});
    std::raise(signal);
    CHECK(comesTrue([&] { return told.statuses == std::vector{0, 0}; }));
  }
}

TEST_CASE("Whoever started the program to outlive his terminal has it outlive him") {
  Told told;
  std::signal(SIGHUP, SIG_IGN);
  const ForcedEnd forcedEnd([&](int status) { told.statuses.push_back(status); });
  std::raise(SIGHUP);
  QtEventPump().pumpEvents();
  CHECK(told.statuses.empty());
}

TEST_CASE("A display that breaks is told with status 1, before the toolkit goes on") {
  Told told;
  const ForcedEnd forcedEnd([&](int status) { told.statuses.push_back(status); });
  qWarning("The font has no such character");
  CHECK(told.statuses.empty());
  qWarning("The X11 connection broke (error 1). Did the X11 server die?");
  CHECK(told.statuses == std::vector{1});
  qWarning("The X11 connection broke: Broken pipe (code 32)");
  qWarning("The Wayland connection broke. Did the Wayland compositor die?");
  qWarning("The Wayland connection experienced a fatal error: Protocol error");
  CHECK(told.statuses == std::vector{1, 1, 1, 1});
}

TEST_CASE("A thread that learns of the broken display waits until the program's own has been told") {
  Told told;
  const ForcedEnd forcedEnd([&](int status) {
    CHECK(QThread::currentThread() == qApp->thread());
    told.statuses.push_back(status);
  });
  std::atomic<std::size_t> toldBefore{99};
  std::thread toolkit([&] {
    qWarning("The Wayland connection broke. Did the Wayland compositor die?");
    toldBefore = told.statuses.size();
  });
  CHECK(comesTrue([&] { return toldBefore != 99; }));
  toolkit.join();
  CHECK(toldBefore == 1);
  CHECK(told.statuses == std::vector{1});
}

}  // namespace trackloom
