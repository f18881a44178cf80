#pragma once

#include <QApplication>
#include <QProxyStyle>

namespace trackloom {

/// The look of all windows: the toolkit's own style, with roomy rows and buttons, a frame around whatever has the
/// focus, marks that stand out on dark desktops too, and the buttons of boxes in one order on every desktop.
class Look final : public QProxyStyle {
 public:
  Look() : QProxyStyle("Fusion") {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
};

/// Gives the application its look and, from the event loop, its icon, which the windows that stand by then get as well.
void dress();

}  // namespace trackloom
