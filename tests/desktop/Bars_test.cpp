#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QToolBar>
#include <catch2/catch.hpp>

#include "desktop/LiveProgram.h"
#include "desktop/Meter.h"

namespace trackloom {

using trial::in;

namespace {

/// The main window of a live program that is doing nothing.
struct Quiet : trial::LiveProgram {
  Quiet() { startQuietly(); }
  QToolBar& bar(const char* name) { return in<QToolBar>(window(), name); }
};

}  // namespace

TEST_CASE("The bars stay above and below the list, each in a line of its own, with their captions under the pictures") {
  Quiet live;
  const auto bars = live.window().findChildren<QToolBar*>();
  REQUIRE(bars.size() == 4);
  for (const QToolBar* bar : bars) {
    INFO(bar->objectName().toStdString());
    CHECK_FALSE(bar->isFloatable());
    CHECK(bar->allowedAreas() == (Qt::TopToolBarArea | Qt::BottomToolBarArea));
    CHECK(bar->accessibleName() == bar->objectName());
    CHECK(bar->windowTitle() == bar->objectName());
    CHECK(bar->iconSize() == QSize(22, 22));
    const bool status = bar->objectName().startsWith("Status");
    CHECK(live.window().toolBarArea(bar) == (status ? Qt::BottomToolBarArea : Qt::TopToolBarArea));
    if (!status) CHECK(bar->toolButtonStyle() == Qt::ToolButtonTextUnderIcon);
  }
  CHECK(live.bar("Tool Bar 1").y() != live.bar("Tool Bar 2").y());
  CHECK(live.window().contextMenuPolicy() == Qt::PreventContextMenu);
  CHECK_FALSE(live.window().menuBar()->objectName().isEmpty());
}

TEST_CASE("The bars and the menus take no input while the program says so") {
  Quiet live;
  DockStudio& dock = live.form().DockStudio1;
  for (const bool enabled : {false, true}) {
    dock.Enabled = enabled;
    CHECK(live.window().menuBar()->isEnabled() == enabled);
    for (const QToolBar* bar : live.window().findChildren<QToolBar*>()) CHECK(bar->isEnabled() == enabled);
  }
}

TEST_CASE("The drives stand beside their picture and caption, 38 characters wide") {
  Quiet live;
  auto& combo = in<QComboBox>(live.window(), "cboMainDrive");
  const QWidget& part = *combo.parentWidget();
  CHECK(combo.sizeAdjustPolicy() == QComboBox::AdjustToMinimumContentsLengthWithIcon);
  CHECK(combo.minimumContentsLength() == 38);
  CHECK(combo.focusPolicy() == Qt::StrongFocus);
  CHECK(part.layout()->contentsMargins() == QMargins(6, 3, 6, 3));
  REQUIRE(part.layout()->count() == 3);
  QWidget& picture = *part.layout()->itemAt(0)->widget();
  CHECK(picture.size() == QSize(22, 22));
  const QImage drawing = picture.grab().toImage();
  QImage blank = drawing;
  blank.fill(drawing.pixel(0, 0));
  CHECK(drawing != blank);
  CHECK(combo.accessibleName() == dynamic_cast<QLabel&>(*part.layout()->itemAt(1)->widget()).text());
  CHECK_FALSE(combo.accessibleName().isEmpty());
  CHECK(part.layout()->itemAt(2)->widget() == &combo);
}

TEST_CASE("Drives that come are offered, the chosen one is shown, and the user's choice is told") {
  Quiet live;
  DockStudio& dock = live.form().DockStudio1;
  Tool& drives = live.form().cboMainDrive;
  auto& combo = in<QComboBox>(live.window(), "cboMainDrive");
  const int before = combo.count();
  dock.AddEntry(drives, "Another & drive", "9");
  REQUIRE(combo.count() == before + 1);
  CHECK(combo.itemText(before) == "Another & drive");
  combo.setCurrentIndex(before);
  live.engines.stage.disc.reset();
  emit combo.activated(before);
  CHECK(drives.SelectedEntry() == before + 1);
  for (const bool enabled : {false, true}) {
    drives.Enabled = enabled;
    CHECK(combo.isEnabled() == enabled);
  }
}

TEST_CASE("The status rows have the meter alone and the panels between lines, across the whole window") {
  Quiet live;
  auto& meter = *live.bar("StatusBar2").findChild<Meter*>();
  CHECK(meter.accessibleName() == "Disc space used");
  CHECK(meter.parentWidget()->layout()->count() == 1);
  QWidget& row = *live.bar("StatusBar1").findChild<QLabel*>()->parentWidget();
  for (const QWidget* whole : {&row, meter.parentWidget()}) {
    CHECK(whole->sizePolicy() == QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed));
    CHECK(whole->layout()->contentsMargins() == QMargins(6, 3, 6, 3));
  }
  REQUIRE(row.layout()->count() == 5);
  for (const int place : {0, 2, 4}) {
    const auto& panel = dynamic_cast<QLabel&>(*row.layout()->itemAt(place)->widget());
    CHECK(panel.textFormat() == Qt::PlainText);
    CHECK(panel.sizePolicy() == QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed));
    CHECK(panel.minimumWidth() == 1);
  }
  for (const int place : {1, 3}) {
    const auto& line = dynamic_cast<QFrame&>(*row.layout()->itemAt(place)->widget());
    CHECK(line.frameStyle() == (int{QFrame::VLine} | int{QFrame::Plain}));
    CHECK(line.foregroundRole() == QPalette::Mid);
  }
}

TEST_CASE("A panel that is too narrow for its text tells it under the pointer, and one that is not does not") {
  Quiet live;
  QWidget& row = *live.bar("StatusBar1").findChild<QLabel*>()->parentWidget();
  const auto& label = dynamic_cast<QLabel&>(*row.layout()->itemAt(0)->widget());
  for (const int length : {400, 1, 500}) {
    live.form().panel1.Text = std::string(static_cast<std::size_t>(length), 'n');
    CHECK(label.text() == QString(length, 'n'));
    CHECK(label.toolTip() == (length == 1 ? QString() : label.text()));
  }
}

}  // namespace trackloom
