#include "desktop/ServiceMounts.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <future>
#include <vector>

#include "PrivateBus.h"

namespace trackloom {

namespace {

using Lines = std::vector<std::string>;

/// A disc service, which has mounted the disc in /dev/sr0 and writes down what it is asked.
class DiscService final : public QDBusVirtualObject {
 public:
  explicit DiscService(const PrivateBus& daemon) : bus_(daemon.connect("discs")) {
    REQUIRE(bus_.registerVirtualObject("/", this, QDBusConnection::SubPath));
    REQUIRE(bus_.registerService("org.freedesktop.UDisks2"));
  }
  ~DiscService() override { QDBusConnection::disconnectFromBus("discs"); }

  Lines asked;
  /// What it answers to the order to unmount; empty: it does.
  QString error;

  QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    asked.push_back(message.path().toStdString() + " " + message.interface().toStdString() + "." +
                    message.member().toStdString());
    connection.send(message.member() == "Unmount" ? unmounted(message) : resolved(message));
    return true;
  }

 private:
  QDBusMessage unmounted(const QDBusMessage& message) const {
    return error.isEmpty() ? message.createReply() : message.createErrorReply(error, "the words of the service");
  }
  static QDBusMessage resolved(const QDBusMessage& message) {
    const auto wanted = qdbus_cast<QVariantMap>(message.arguments().at(0).value<QDBusArgument>());
    QList<QDBusObjectPath> found;
    if (wanted.value("path").toString() == "/dev/sr0")
      found.append(QDBusObjectPath("/org/freedesktop/UDisks2/block_devices/sr0"));
    return message.createReply(QVariant::fromValue(found));
  }

  QDBusConnection bus_;
};

struct AskedBus {
  ~AskedBus() { QDBusConnection::disconnectFromBus("program"); }

  /// As an engine's thread asks.
  std::string unmount(const std::string& node) {
    auto said = std::async(std::launch::async,
                           [&] { return ServiceMounts([this] { return daemon.connect("program"); }).unmount(node); });
    REQUIRE(comes([&] { return said.wait_for(std::chrono::milliseconds(1)) == std::future_status::ready; }));
    return said.get();
  }

  PrivateBus daemon;
  DiscService service{daemon};
};

}  // namespace

TEST_CASE("The disc service is asked which device a node is, and to unmount it") {
  AskedBus bus;
  CHECK(bus.unmount("/dev/sr0").empty());
  CHECK(bus.service.asked == Lines{"/org/freedesktop/UDisks2/Manager org.freedesktop.UDisks2.Manager.ResolveDevice",
                                   "/org/freedesktop/UDisks2/block_devices/sr0 "
                                   "org.freedesktop.UDisks2.Filesystem.Unmount"});
}

TEST_CASE("What the disc service says where it does not unmount is told, and nothing where there was nothing to do") {
  AskedBus bus;
  bus.service.error = "org.freedesktop.UDisks2.Error.DeviceBusy";
  CHECK(bus.unmount("/dev/sr0") == "the words of the service");
  bus.service.error = "org.freedesktop.UDisks2.Error.NotMounted";
  CHECK(bus.unmount("/dev/sr0").empty());
  bus.service.error = "org.freedesktop.DBus.Error.UnknownMethod";
  CHECK(bus.unmount("/dev/sr0").empty());
  bus.service.asked.clear();
  CHECK(bus.unmount("/dev/sr1").empty());
  CHECK(bus.service.asked.size() == 1);
}

TEST_CASE("Without a disc service and without a bus nothing is said") {
  const PrivateBus daemon;
  CHECK(ServiceMounts([&] { return daemon.connect("alone"); }).unmount("/dev/sr0").empty());
  QDBusConnection::disconnectFromBus("alone");
  const auto none = [] { return QDBusConnection::connectToBus("unix:path=/nowhere/at/all", "none"); };
  CHECK(ServiceMounts(none).unmount("/dev/sr0").empty());
  QDBusConnection::disconnectFromBus("none");
}

}  // namespace trackloom
