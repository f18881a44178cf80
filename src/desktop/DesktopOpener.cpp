#include "desktop/DesktopOpener.h"

#include <QDesktopServices>
#include <filesystem>

namespace trackloom {

namespace {

bool isAddress(const std::string& target) {
  return target.starts_with("http://") || target.starts_with("https://") || target.starts_with("mailto:");
}

}  // namespace

QUrl desktopAddress(const std::string& target) {
  if (isAddress(target)) return QUrl::fromEncoded(QByteArray::fromStdString(target));
  const std::string path = std::filesystem::absolute(target).string();
  return QUrl::fromEncoded("file://" + QByteArray::fromStdString(path).toPercentEncoding("/"));
}

void DesktopOpener::open(const ShellOrder& order) {
  QDesktopServices::openUrl(desktopAddress(order.file));
}

}  // namespace trackloom
