#include "desktop/Shown.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <algorithm>

#include "desktop/Appearance.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr int ChannelBits = 8;
constexpr int ChannelMask = 0xFF;
/// Colours at least this light are read well on a dark background (HSL lightness, 0 to 255).
constexpr int LightEnough = 170;

QIcon drawing(const QString& path) {
  return QFile::exists(path) ? QIcon(path) : QIcon();
}

QColor systemColour(int index, const QPalette& palette) {
  constexpr int Window = 5;
  constexpr int Highlight = 13;
  constexpr int HighlightText = 14;
  constexpr int ButtonFace = 15;
  constexpr int GreyText = 17;
  switch (index) {
    case Window:
      return palette.color(QPalette::Base);
    case Highlight:
      return palette.color(QPalette::Highlight);
    case HighlightText:
      return palette.color(QPalette::HighlightedText);
    case ButtonFace:
      return palette.color(QPalette::Button);
    case GreyText:
      return palette.color(QPalette::Disabled, QPalette::Text);
    default:
      return {};
  }
}

}  // namespace

QString shown(std::string_view text) {
  return QString::fromStdString(displayText(text));
}

std::string entered(const QString& text) {
  return text.toStdString();
}

QString foldCaption(std::string_view caption) {
  std::string folded;
  for (std::size_t at = 0; at < caption.size(); ++at) {
    if (caption[at] == '&' && ++at == caption.size()) break;
    folded += caption[at];
  }
  return shown(folded);
}

QColor shownColour(Colour colour, const QPalette& palette) {
  if (colour < 0) return systemColour(colour & ChannelMask, palette);
  const QColor plain(colour & ChannelMask, (colour >> ChannelBits) & ChannelMask,
                     (colour >> (2 * ChannelBits)) & ChannelMask);
  if (!isDark(palette)) return plain;
  return QColor::fromHsl(plain.hslHue(), plain.hslSaturation(), std::max(plain.lightness(), LightEnough));
}

QIcon pictureNamed(const std::string& name) {
  return drawing(":/pictures/" + QString::fromStdString(name) + ".svg");
}

QIcon iconNamed(const std::string& name) {
  return drawing(":/icons/" + QString::fromStdString(name) + ".svg");
}

QIcon rowIconNamed(const std::string& name) {
  const QIcon drawn = iconNamed(name);
  QIcon icon;
  for (const int side : {16, 20, 24, 32, 48}) {
    QPixmap pixmap = drawn.pixmap(side);
    if (pixmap.isNull()) continue;
    icon.addPixmap(pixmap, QIcon::Normal);
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), QGuiApplication::palette().highlightedText());
    painter.end();
    icon.addPixmap(pixmap, QIcon::Selected);
  }
  return icon;
}

}  // namespace trackloom
