#include "desktop/ServiceMounts.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QVariantMap>
#include <chrono>
#include <future>
#include <utility>

#include "desktop/Aside.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr const char* Service = "org.freedesktop.UDisks2";
constexpr const char* OwnErrors = "org.freedesktop.UDisks2.Error.";
constexpr int LongestCall = 20'000;
constexpr std::chrono::seconds Limit{30};

QDBusMessage whichIs(const QString& node) {
  QDBusMessage question = QDBusMessage::createMethodCall(Service, "/org/freedesktop/UDisks2/Manager",
                                                         "org.freedesktop.UDisks2.Manager", "ResolveDevice");
  return question << QVariantMap{{"path", node}} << QVariantMap();
}

QDBusMessage unmounting(const QDBusObjectPath& device) {
  QDBusMessage order =
      QDBusMessage::createMethodCall(Service, device.path(), "org.freedesktop.UDisks2.Filesystem", "Unmount");
  return order << QVariantMap();
}

/// A device that is not mounted, and one that has no file system, is as it should be.
QString refusalIn(const QDBusMessage& reply) {
  const QString error = reply.errorName();
  const bool refused = error.startsWith(OwnErrors) && !error.endsWith(".NotMounted");
  return refused ? reply.errorMessage() : QString();
}

std::string askToUnmount(const QDBusConnection& bus, const std::string& node) {
  const QDBusReply<QList<QDBusObjectPath>> devices = bus.call(whichIs(shown(node)), QDBus::Block, LongestCall);
  for (const QDBusObjectPath& device : devices.value()) {
    const QString refusal = refusalIn(bus.call(unmounting(device), QDBus::Block, LongestCall));
    if (!refusal.isEmpty()) return refusal.toStdString();
  }
  return {};
}

}  // namespace

ServiceMounts::ServiceMounts(Bus system) : system_(std::move(system)) {}

std::string ServiceMounts::unmount(const std::string& node) {
  const auto said = std::make_shared<std::promise<std::string>>();
  auto answer = said->get_future();
  if (!doAside([said, node, system = system_] { said->set_value(askToUnmount(system(), node)); })) return {};
  const bool answered = answer.wait_for(Limit) == std::future_status::ready;
  return answered ? answer.get() : "the disc service does not answer";
}

}  // namespace trackloom
