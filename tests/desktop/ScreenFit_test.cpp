#include "desktop/ScreenFit.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <catch2/catch.hpp>

#include "desktop/AllForms.h"
#include "desktop/Trial.h"

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

bool isLastButton(const QWidget& widget, const QWidget& window) {
  return qobject_cast<const QPushButton*>(&widget) != nullptr && widget.parentWidget() == &window;
}

/// A label or a picture can be empty; everything else draws itself.
bool hasSomethingToShow(Control& control) {
  if (const auto* label = dynamic_cast<Label*>(&control)) return !label->Caption.get().empty();
  return dynamic_cast<PictureBox*>(&control) == nullptr;
}

bool hasTwoColours(const QImage& picture) {
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      if (picture.pixel(x, y) != picture.pixel(0, 0)) return true;
  return false;
}

QScrollArea* areaAround(const QWidget& widget, QWidget& window) {
  auto* area = window.findChild<QScrollArea*>();
  return area != nullptr && area->isAncestorOf(&widget) ? area : nullptr;
}

/// As a user would with the bars.
void scrollTo(QScrollArea& area, const QWidget& widget) {
  const QPoint place = widget.mapTo(area.widget(), QPoint());
  area.horizontalScrollBar()->setValue(place.x());
  area.verticalScrollBar()->setValue(place.y());
}

/// What is seen of the widget in the window.
QRect seenOf(const QWidget& widget, const QWidget& window) {
  return widget.visibleRegion().boundingRect().translated(widget.mapTo(&window, QPoint()));
}

/// The control stands in the window, or is scrolled there, and is painted with nothing over it.
void checkControl(Control& control, QWidget& widget, QWidget& window) {
  if (QScrollArea* area = areaAround(widget, window))
    scrollTo(*area, widget);
  else
    CHECK(inSight(widget, window));
  const QRect seen = seenOf(widget, window);
  REQUIRE_FALSE(seen.isEmpty());
  const QWidget* top = window.childAt(seen.center());
  REQUIRE(top != nullptr);
  CHECK((top == &widget || widget.isAncestorOf(top)));
  if (hasSomethingToShow(control)) CHECK(hasTwoColours(window.grab(seen).toImage()));
}

void checkControls(Form& form, QWidget& window) {
  for (Control* control : form.controls()) {
    auto* widget = window.findChild<QWidget*>(QString::fromStdString(control->name()));
    if (widget == nullptr || !control->Visible || !widget->parentWidget()->isVisible()) continue;
    INFO(control->name());
    REQUIRE(widget->isVisible());
    checkControl(*control, *widget, window);
    if (isLastButton(*widget, window)) CHECK(inSight(*widget, window));
  }
}

/// The form as it is, and each of its other pages.
void checkPages(Form& form, QWidget& window) {
  checkControls(form, window);
  for (Control* control : form.controls()) {
    auto* tabs = dynamic_cast<TabStrip*>(control);
    const int pages = tabs == nullptr ? 0 : static_cast<int>(tabs->captions().size());
    for (int page = 1; page <= pages; ++page) {
      INFO("page " << page);
      tabs->choose(page);
      QTest::qWait(0);
      checkControls(form, window);
    }
  }
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
    checkPages(*form, window);
  }
}

/// A form with more rows than a small screen holds.
struct TallForm {
  TallForm() : shown(named("frmOptions")) {}
  Form& named(const std::string& name) {
    return **std::find_if(forms.all.begin(), forms.all.end(), [&](const auto& form) { return form->name() == name; });
  }
  QScrollArea& area() { return *shown.window.findChild<QScrollArea*>(); }
  /// To the end of the area that the widget is not at.
  void scrollFarFrom(const QWidget& widget) {
    const QScrollBar& bar = *area().verticalScrollBar();
    const bool high = widget.mapTo(area().widget(), QPoint()).y() < bar.maximum() / 2;
    area().verticalScrollBar()->setValue(high ? bar.maximum() : 0);
    area().horizontalScrollBar()->setValue(area().horizontalScrollBar()->maximum());
  }
  void tabTo(QWidget& widget) {
    const auto chain = trial::tabChain(shown.window);
    const auto place = std::find(chain.begin(), chain.end(), &widget);
    QWidget* before = place == chain.begin() ? chain.back() : *(place - 1);
    before->setFocus();
    scrollFarFrom(widget);
    QTest::keyClick(before, Qt::Key_Tab);
  }

  trial::AllForms forms;
  trial::ShownForm shown;
};

constexpr QSize LowRoom(636, 260);

std::vector<std::pair<QLabel*, QWidget*>> buddiesIn(QWidget& window) {
  std::vector<std::pair<QLabel*, QWidget*>> buddies;
  for (auto* label : window.findChildren<QLabel*>()) buddies.emplace_back(label, label->buddy());
  std::sort(buddies.begin(), buddies.end());
  return buddies;
}

}  // namespace

TEST_CASE("Every dialog fits a small screen, with its last buttons in sight") {
  for (const QSize& room : smallScreens) checkForms(room);
}

TEST_CASE("Every dialog fits a large screen whose font is three times as large") {
  const LargeFont font(3);
  checkForms({1916, 1020});
}

TEST_CASE("The main window can be as small as a small screen") {
  trial::AllForms forms;
  for (const auto& form : forms.all) {
    trial::ShownForm shown(*form);
    if (shown.window.inherits("QDialog")) continue;
    INFO(form->name());
    giveWay(shown.window, {636, 400});
    shown.window.resize(636, 400);
    QTest::qWait(0);
    CHECK(shown.window.size() == QSize(636, 400));
  }
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

TEST_CASE("What takes the focus comes into sight with its beginning, from wherever it takes it") {
  const LargeFont font(2);
  TallForm tall;
  QWidget& window = tall.shown.window;
  fitInto(window, LowRoom);
  window.show();
  REQUIRE(QTest::qWaitForWindowActive(&window));
  const bool byTab = GENERATE(true, false);
  int reached = 0;
  for (QWidget* widget : trial::tabChain(window)) {
    if (!tall.area().widget()->isAncestorOf(widget)) continue;
    INFO(widget->objectName().toStdString());
    window.findChild<QPushButton*>("cmdOK")->setFocus();
    tall.scrollFarFrom(*widget);
    byTab ? tall.tabTo(*widget) : widget->setFocus(Qt::ShortcutFocusReason);
    CHECK(window.focusWidget() == widget);
    const QRect start(widget->mapTo(&tall.area(), QPoint()), QSize(1, std::min(widget->height(), 20)));
    CHECK(tall.area().rect().contains(start));
    ++reached;
  }
  CHECK(reached > 3);
}

TEST_CASE(
    "A dialog that begins to scroll keeps its order of the Tab key, its buddies, its focus and its default button") {
  TallForm tall;
  QWidget& window = tall.shown.window;
  const bool atOnce = GENERATE(true, false);
  if (!atOnce) window.show();
  QTest::qWait(0);
  const auto chain = trial::tabChain(window);
  const auto buddies = buddiesIn(window);
  chain[2]->setFocus();
  fitInto(window, LowRoom);
  window.show();
  QTest::qWait(0);
  CHECK(trial::tabChain(window) == chain);
  CHECK(buddiesIn(window) == buddies);
  CHECK(window.focusWidget() == chain[2]);
  CHECK(window.findChild<QPushButton*>("cmdOK")->isDefault());
  checkPages(tall.named("frmOptions"), window);
}

TEST_CASE("A dialog that does not fit even so begins to scroll only once") {
  TallForm tall;
  for (int time = 0; time < 3; ++time) fitInto(tall.shown.window, {80, 60});
  CHECK(tall.shown.window.findChildren<QScrollArea*>().size() == 1);
  CHECK(tall.area().verticalScrollBarPolicy() == Qt::ScrollBarAlwaysOn);
  CHECK(tall.area().frameShape() == QFrame::NoFrame);
  CHECK(tall.area().focusPolicy() == Qt::NoFocus);
}

}  // namespace trackloom
