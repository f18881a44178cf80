#pragma once

#include <QDBusConnection>
#include <functional>

#include "ports/DiscMounts.h"

namespace trackloom {

/// Asks UDisks2 over the system bus (org.freedesktop.UDisks2.Filesystem.Unmount). The bus is found and asked on a
/// thread aside, so one that never answers costs half a minute.
class ServiceMounts final : public DiscMounts {
 public:
  using Bus = std::function<QDBusConnection()>;

  explicit ServiceMounts(Bus system = &QDBusConnection::systemBus);

  std::string unmount(const std::string& node) override;

 private:
  Bus system_;
};

}  // namespace trackloom
