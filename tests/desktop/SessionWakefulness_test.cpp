#include "desktop/SessionWakefulness.h"

#include <poll.h>
#include <unistd.h>

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <array>
#include <atomic>
#include <vector>

#include "PrivateBus.h"
#include "runtime/FileDescriptor.h"

namespace trackloom {

namespace {

using Lines = std::vector<std::string>;

/// The login manager and the portal, which write down what they are asked and what still stands.
class Desktop final : public QDBusVirtualObject {
 public:
  explicit Desktop(const PrivateBus& daemon) : bus_(daemon.connect("desktop")) {
    REQUIRE(bus_.registerVirtualObject("/", this, QDBusConnection::SubPath));
    REQUIRE(bus_.registerService("org.freedesktop.login1"));
    REQUIRE(bus_.registerService("org.freedesktop.portal.Desktop"));
  }
  ~Desktop() override { QDBusConnection::disconnectFromBus("desktop"); }

  Lines asked;
  int portalHolds = 0;
  bool refuses = false;

  /// The files that the login manager gave away and that nobody has closed yet.
  int loginHolds() {
    int open = 0;
    for (const FileDescriptor& end : ends_) {
      pollfd look{end.get(), POLLIN, 0};
      if (poll(&look, 1, 0) == 0) ++open;
    }
    return open;
  }

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    note(message);
    connection.send(refuses ? message.createErrorReply(QDBusError::AccessDenied, "no") : answer(message));
    return true;
  }

 private:
  void note(const QDBusMessage& message) {
    std::string words = message.interface().toStdString() + "." + message.member().toStdString();
    for (const QVariant& argument : message.arguments())
      words += argument.canConvert<QDBusArgument>()
                   ? " " + qdbus_cast<QVariantMap>(argument).value("reason").toString().toStdString()
                   : " " + argument.toString().toStdString();
    asked.push_back(words);
  }
  QDBusMessage answer(const QDBusMessage& message) {
    if (message.member() == "Close") --portalHolds;
    if (message.member() == "Close") return message.createReply();
    if (message.interface().contains("portal")) {
      ++portalHolds;
      return message.createReply(QVariant::fromValue(QDBusObjectPath("/request/1")));
    }
    std::array<int, 2> pipe{};
    REQUIRE(::pipe(pipe.data()) == 0);
    ends_.emplace_back(pipe[0]);
    const FileDescriptor given(pipe[1]);
    return message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(given.get())));
  }

  QDBusConnection bus_;
  std::vector<FileDescriptor> ends_;
};

/// The program's side of both buses, which are one here.
struct BothBuses {
  BothBuses() {
    QDBusConnection bus = daemon.connect("program");
    wakefulness.emplace([bus] { return bus; }, [bus] { return bus; });
  }
  ~BothBuses() { QDBusConnection::disconnectFromBus("program"); }

  PrivateBus daemon;
  Desktop desktop{daemon};
  std::optional<SessionWakefulness> wakefulness;

  bool stand(int holds) {
    return comes([&] { return desktop.loginHolds() == holds && desktop.portalHolds == holds; });
  }
};

}  // namespace

TEST_CASE("While a hold is kept, the session is asked neither to sleep nor to end, and then no more") {
  BothBuses both;
  auto hold = both.wakefulness->stayAwake("A disc is being written");
  REQUIRE(both.stand(1));
  CHECK(both.desktop.asked == Lines{"org.freedesktop.login1.Manager.Inhibit sleep:shutdown:idle Trackloom A disc "
                                    "is being written block",
                                    "org.freedesktop.portal.Inhibit.Inhibit  13 A disc is being written"});
  hold.reset();
  CHECK(both.stand(0));
  CHECK(both.desktop.asked.size() == 3);
}

TEST_CASE("Two holds stand side by side, and each ends by itself") {
  BothBuses both;
  auto first = both.wakefulness->stayAwake("one");
  auto second = both.wakefulness->stayAwake("two");
  REQUIRE(both.stand(2));
  first.reset();
  REQUIRE(both.stand(1));
  second.reset();
  CHECK(both.stand(0));
}

TEST_CASE("A hold that ends at once leaves nothing behind, however late the answers come") {
  BothBuses both;
  for (int turn = 0; turn < 20; ++turn) both.wakefulness->stayAwake("one").reset();
  const auto last = both.wakefulness->stayAwake("two");
  CHECK(both.stand(1));
}

TEST_CASE("A session that says no, and a machine without a bus, change nothing") {
  BothBuses both;
  both.desktop.refuses = true;
  both.wakefulness->stayAwake("one").reset();
  auto hold = both.wakefulness->stayAwake("two");
  REQUIRE(comes([&] { return both.desktop.asked.size() >= 2; }));
  hold.reset();
  QTest::qWait(50);
  CHECK(both.desktop.portalHolds == 0);
  const auto none = [] { return QDBusConnection::connectToBus("unix:path=/nowhere/at/all", "none"); };
  SessionWakefulness(none, none).stayAwake("three").reset();
  QTest::qWait(50);
  QDBusConnection::disconnectFromBus("none");
}

TEST_CASE("A bus that does not answer holds up neither the work nor its end") {
  std::atomic<bool> open = false;
  std::atomic<int> asked = 0;
  const auto deaf = [&] {
    ++asked;
    while (!open) QTest::qSleep(1);
    return QDBusConnection::connectToBus("unix:path=/nowhere/at/all", "deaf");
  };
  {
    SessionWakefulness wakefulness(deaf, deaf);
    auto hold = wakefulness.stayAwake("one");
    REQUIRE(comes([&] { return asked == 1; }));
    hold.reset();
    CHECK_FALSE(open);
  }
  open = true;
  CHECK(comes([&] { return asked == 2; }));
  QTest::qWait(50);
  QDBusConnection::disconnectFromBus("deaf");
}

}  // namespace trackloom
