#pragma once

#include <QApplication>
#include <QProxyStyle>

namespace trackloom {

/// The look of all windows: the toolkit's own style, with roomy rows in lists and the buttons of boxes in one order on
/// every desktop.
class Look final : public QProxyStyle {
 public:
  Look() : QProxyStyle("Fusion") {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
};

/// Gives the application its look and its icon.
void dress(QApplication& application);

}  // namespace trackloom
