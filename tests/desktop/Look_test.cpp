#include <QCheckBox>
#include <QHeaderView>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QTreeView>
#include <algorithm>
#include <catch2/catch.hpp>

#include "desktop/Appearance.h"

namespace trackloom {

namespace {

/// The lightest that the first `width` pixels of the widget show.
int lightest(QWidget& widget, int width) {
  const QImage image = widget.grab(QRect(0, 0, width, widget.height())).toImage();
  int found = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) found = std::max(found, image.pixelColor(x, y).lightness());
  return found;
}

}  // namespace

TEST_CASE("What is right of the last column's head looks as the heads do") {
  QStandardItemModel model(0, 2);
  QTreeView view;
  view.setModel(&model);
  view.header()->setStretchLastSection(false);
  view.resize(400, 100);
  view.show();
  const QHeaderView& heads = *view.header();
  const int end = heads.sectionPosition(1) + heads.sectionSize(1);
  REQUIRE(end + 20 < heads.width());
  const QImage image = view.header()->grab().toImage();
  for (int y = 0; y < image.height(); ++y) CHECK(image.pixelColor(end - 10, y) == image.pixelColor(end + 10, y));
}

TEST_CASE("A mark that is not set stands out on a dark desktop") {
  constexpr int MarkWidth = 16;
  constexpr int Contrast = 60;
  QRadioButton option("Option");
  QCheckBox box("Box");
  for (QWidget* widget : {static_cast<QWidget*>(&option), static_cast<QWidget*>(&box)}) {
    widget->setPalette(darkPalette());
    CHECK(lightest(*widget, MarkWidth) > darkPalette().color(QPalette::Window).lightness() + Contrast);
  }
}

TEST_CASE("A button has air beside its caption, however long that is") {
  constexpr int Air = 12;
  const QPushButton button("Close Last Incomplete Session");
  CHECK(button.sizeHint().width() >= button.fontMetrics().horizontalAdvance(button.text()) + 2 * Air);
}

}  // namespace trackloom
