#pragma once

#include <QDBusConnection>
#include <functional>

#include "ports/Wakefulness.h"

namespace trackloom {

/// Asks over D-Bus: the login manager not to sleep or shut down, and the desktop's portal not to log out
/// (org.freedesktop.login1.Manager.Inhibit, org.freedesktop.portal.Inhibit). Whoever is not there, or says no, is not
/// asked again. The buses are found and asked on threads aside, so a bus that never answers holds up nobody.
class SessionWakefulness final : public Wakefulness {
 public:
  using Bus = std::function<QDBusConnection()>;

  explicit SessionWakefulness(Bus system = &QDBusConnection::systemBus, Bus session = &QDBusConnection::sessionBus);

  Hold stayAwake(const std::string& why) override;

 private:
  Bus system_;
  Bus session_;
};

}  // namespace trackloom
