#include "desktop/Look.h"

#include <QDialogButtonBox>
#include <QIcon>

#include "desktop/Appearance.h"

namespace trackloom {

namespace {

/// What a row of a list gets above and below its text together, in device-independent pixels.
constexpr int RowAir = 8;
/// Left and right of the text in a cell and in the head of its column, which so stand in one line.
constexpr int CellAir = 6;

}  // namespace

int Look::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                    QStyleHintReturn* returned) const {
  if (hint == SH_DialogButtonLayout) return QDialogButtonBox::WinLayout;
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  return QProxyStyle::styleHint(hint, option, widget, returned);
}

int Look::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  if (metric == PM_HeaderMargin) return CellAir;
  if (metric == PM_FocusFrameHMargin && widget != nullptr && widget->inherits("QTreeView")) return CellAir;
  return QProxyStyle::pixelMetric(metric, option, widget);
}

QSize Look::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                             const QWidget* widget) const {
  QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  if (type == CT_ItemViewItem) size.rheight() += RowAir;
  return size;
}

void dress(QApplication& application) {
  QApplication::setStyle(std::make_unique<Look>().release());
  application.setWindowIcon(QIcon(":/trackloom.svg"));
  followColourScheme();
}

}  // namespace trackloom
