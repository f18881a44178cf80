#include "desktop/SessionWakefulness.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>
#include <mutex>
#include <utility>

#include "desktop/Aside.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr const char* PortalService = "org.freedesktop.portal.Desktop";

QDBusMessage loginQuestion(const QString& why) {
  QDBusMessage question = QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                                         "org.freedesktop.login1.Manager", "Inhibit");
  return question << "sleep:shutdown:idle"
                  << "Trackloom" << why << "block";
}

QDBusMessage portalQuestion(const QString& why) {
  constexpr unsigned LogOut = 1;
  constexpr unsigned Suspend = 4;
  constexpr unsigned Idle = 8;
  QDBusMessage question = QDBusMessage::createMethodCall(PortalService, "/org/freedesktop/portal/desktop",
                                                         "org.freedesktop.portal.Inhibit", "Inhibit");
  return question << QString() << (LogOut | Suspend | Idle) << QVariantMap{{"reason", why}};
}

/// What one hold has asked for. It is asked and let go on threads that may come in any order.
class Request {
 public:
  Request(SessionWakefulness::Bus system, SessionWakefulness::Bus session)
      : system_(std::move(system)), session_(std::move(session)) {}

  void ask(const QString& why) {
    const std::lock_guard lock(mutex_);
    if (over_) return;
    login_ = QDBusReply<QDBusUnixFileDescriptor>(system_().call(loginQuestion(why))).value();
    portal_ = QDBusReply<QDBusObjectPath>(session_().call(portalQuestion(why))).value();
  }

  void letGo() {
    const std::lock_guard lock(mutex_);
    over_ = true;
    // The login manager waits for its file to be closed.
    login_ = QDBusUnixFileDescriptor();
    if (!portal_.path().isEmpty())
      session_().call(
          QDBusMessage::createMethodCall(PortalService, portal_.path(), "org.freedesktop.portal.Request", "Close"));
  }

 private:
  SessionWakefulness::Bus system_;
  SessionWakefulness::Bus session_;
  std::mutex mutex_;
  bool over_ = false;
  QDBusUnixFileDescriptor login_;
  QDBusObjectPath portal_;
};

}  // namespace

SessionWakefulness::SessionWakefulness(Bus system, Bus session)
    : system_(std::move(system)), session_(std::move(session)) {}

Wakefulness::Hold SessionWakefulness::stayAwake(const std::string& why) {
  const auto request = std::make_shared<Request>(system_, session_);
  doAside([request, words = shown(why)] { request->ask(words); });
  return {nullptr, [request](void*) { doAside([request] { request->letGo(); }); }};
}

}  // namespace trackloom
