#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QtTest/QTest>
#include <catch2/catch.hpp>

namespace trackloom {

/// Buses wake up slowly on a machine at work.
template <class Condition>
bool comes(Condition condition) {
  return QTest::qWaitFor(condition, 30000);
}

/// A bus of a test's own.
class PrivateBus {
 public:
  PrivateBus() {
    process_.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    REQUIRE(process_.waitForReadyRead());
    address_ = QString::fromUtf8(process_.readLine()).trimmed();
  }
  ~PrivateBus() {
    process_.kill();
    process_.waitForFinished();
  }
  QDBusConnection connect(const QString& name) const { return QDBusConnection::connectToBus(address_, name); }

 private:
  QProcess process_;
  QString address_;
};

}  // namespace trackloom
