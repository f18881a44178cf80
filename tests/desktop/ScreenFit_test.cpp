#include "desktop/ScreenFit.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <algorithm>
#include <catch2/catch.hpp>

#include "desktop/AllForms.h"

namespace trackloom {

namespace {

/// The logical sizes of screens that are small or strongly enlarged: 640x480, 800x600, 1366x768 at 150 %, 1280x800 and
/// 1920x1080 at 200 % and 300 %, each less a desktop's bar and a window's frame.
const std::vector<QSize> smallScreens{{636, 420}, {796, 540}, {906, 452}, {636, 340}, {956, 480}, {636, 300}};

/// A font for the time of a test.
class LargeFont {
 public:
  explicit LargeFont(double times) : before_(QApplication::font()) {
    QFont font = before_;
    font.setPointSizeF(font.pointSizeF() * times);
    QApplication::setFont(font);
  }
  ~LargeFont() { QApplication::setFont(before_); }
  LargeFont(const LargeFont&) = delete;
  LargeFont& operator=(const LargeFont&) = delete;

 private:
  QFont before_;
};

bool inSight(const QWidget& widget, const QWidget& window) {
  const QRect place(widget.mapTo(&window, QPoint()), widget.size());
  return window.rect().contains(place) && widget.visibleRegion().boundingRect().size() == widget.size();
}

/// The buttons of the form's last rows; those within a frame scroll with it.
std::vector<QPushButton*> lastButtons(QWidget& window) {
  std::vector<QPushButton*> buttons;
  for (auto* button : window.findChildren<QPushButton*>())
    if (button->parentWidget() == &window && button->isVisibleTo(&window)) buttons.push_back(button);
  return buttons;
}

/// Every form on a screen of this size.
void checkForms(const QSize& room) {
  trial::AllForms forms;
  for (const auto& form : forms.all) {
    trial::ShownForm shown(*form);
    QWidget& window = shown.window;
    if (!window.inherits("QDialog") || window.property("frameless").toBool()) continue;
    INFO(form->name() << " on " << room.width() << "x" << room.height());
    fitInto(window, room);
    window.show();
    QTest::qWait(0);
    CHECK(window.size().boundedTo(room) == window.size());
    CHECK(window.minimumSize().boundedTo(room) == window.minimumSize());
    for (const QPushButton* button : lastButtons(window)) {
      INFO(button->text().toStdString());
      CHECK(inSight(*button, window));
    }
  }
}

}  // namespace

TEST_CASE("Every dialog fits a small screen, with its last buttons in sight") {
  for (const QSize& room : smallScreens) checkForms(room);
}

TEST_CASE("Every dialog fits a large screen whose font is three times as large") {
  const LargeFont font(3);
  checkForms({1916, 1020});
}

TEST_CASE("A dialog that fits is left as it is") {
  trial::AllForms forms;
  for (const auto& form : forms.all) {
    trial::ShownForm shown(*form);
    const QSize before = shown.window.size();
    const QSize least = shown.window.minimumSize();
    if (!shown.window.inherits("QDialog")) continue;
    fitInto(shown.window, {4000, 4000});
    CHECK(shown.window.size() == before);
    CHECK(shown.window.minimumSize() == least);
    CHECK(shown.window.findChild<QScrollArea*>() == nullptr);
  }
}

TEST_CASE("What scrolls can be reached by keyboard, and comes into sight with the focus") {
  trial::AllForms forms;
  const auto options =
      std::find_if(forms.all.begin(), forms.all.end(), [](const auto& form) { return form->name() == "frmOptions"; });
  REQUIRE(options != forms.all.end());
  trial::ShownForm shown(**options);
  fitInto(shown.window, {636, 260});
  shown.window.show();
  auto* area = shown.window.findChild<QScrollArea*>();
  REQUIRE(area != nullptr);
  for (QWidget* widget : trial::tabChain(shown.window)) {
    if (!area->widget()->isAncestorOf(widget)) continue;
    widget->setFocus(Qt::TabFocusReason);
    area->ensureWidgetVisible(widget);
    CHECK_FALSE(widget->visibleRegion().isEmpty());
  }
}

}  // namespace trackloom
