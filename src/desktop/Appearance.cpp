#include "desktop/Appearance.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include "desktop/Aside.h"

namespace trackloom {

QDBusMessage schemeQuestion() {
  QDBusMessage question = QDBusMessage::createMethodCall(
      "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "Read");
  question << "org.freedesktop.appearance"
           << "color-scheme";
  return question;
}

bool prefersDark(const QDBusVariant& answer) {
  constexpr unsigned PreferDark = 1;
  QVariant value = answer.variant();
  if (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value.toUInt() == PreferDark;
}

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QPalette darkPalette() {
  const QColor window(0x32, 0x34, 0x37);
  const QColor text(0xEC, 0xEC, 0xEC);
  const QColor faint(0x8E, 0x92, 0x96);
  QPalette palette(QColor(0x44, 0x47, 0x4B), window);
  palette.setColor(QPalette::Base, QColor(0x24, 0x26, 0x28));
  palette.setColor(QPalette::AlternateBase, QColor(0x2B, 0x2D, 0x30));
  palette.setColor(QPalette::Highlight, QColor(0x2A, 0x78, 0xB8));
  palette.setColor(QPalette::Link, QColor(0x6C, 0xB8, 0xE8));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, faint);
  }
  palette.setColor(QPalette::ToolTipBase, window);
  palette.setColor(QPalette::PlaceholderText, faint);
  return palette;
}

void followColourScheme() {
  doAside([] {
    const QDBusReply<QDBusVariant> reply = QDBusConnection::sessionBus().call(schemeQuestion());
    if (!reply.isValid() || !prefersDark(reply.value())) return;
    const auto darken = [] {
      if (!isDark(QApplication::palette())) QApplication::setPalette(darkPalette());
    };
    QMetaObject::invokeMethod(qApp, darken, Qt::QueuedConnection);
  });
}

}  // namespace trackloom
