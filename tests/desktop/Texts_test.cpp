#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTabBar>
#include <QToolBar>
#include <QTreeView>
#include <catch2/catch.hpp>
#include <iostream>

#include "desktop/AllForms.h"
#include "desktop/CutTexts.h"
#include "desktop/Make.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// The application's font enlarged, for as long as this lives.
class Enlarged {
 public:
  explicit Enlarged(double times) {
    QFont font = usual_;
    font.setPointSizeF(usual_.pointSizeF() * times);
    QApplication::setFont(font);
  }
  ~Enlarged() { QApplication::setFont(usual_); }
  Enlarged(const Enlarged&) = delete;
  Enlarged& operator=(const Enlarged&) = delete;

 private:
  const QFont usual_ = QApplication::font();
};

/// The texts of a form, with each of its tabs in front once; how many there were.
int checkTexts(Form& form) {
  const trial::ShownForm shown(form);
  int texts = 0;
  const auto check = [&] {
    QCoreApplication::sendPostedEvents();
    const trial::TextLook look = trial::lookAtTexts(shown.window);
    CHECK(look.cut == Lines());
    texts += look.texts;
  };
  check();
  for (QTabBar* bar : shown.window.findChildren<QTabBar*>())
    for (int tab = 1; tab < bar->count(); ++tab) {
      bar->setCurrentIndex(tab);
      check();
    }
  return texts;
}

template <class Widget, class... Args>
Widget& narrow(QWidget& window, int width, Args&&... args) {
  auto& widget = make<Widget>(window, std::forward<Args>(args)...);
  widget.resize(width, 30);
  return widget;
}

}  // namespace

TEST_CASE("No form cuts a text, in the usual font and in one a quarter larger", "[scale]") {
  for (const double times : {1.0, 1.25}) {
    const Enlarged font(times);
    int texts = 0;
    for (const std::int16_t kind : {AudioLayout, Mp3Layout}) {
      const trial::AllForms forms(kind);
      for (const auto& form : forms.all) {
        INFO(form->name() << ", font times " << times);
        texts += checkTexts(*form);
      }
    }
    std::cout << texts << " texts measured, font times " << times << ", scale " << qApp->devicePixelRatio() << '\n';
    CHECK(texts > 300);
  }
}

TEST_CASE("The screen has the scale that the environment asks for", "[scale]") {
  const QByteArray asked = qgetenv("QT_SCALE_FACTOR");
  CHECK(qApp->devicePixelRatio() == Approx(asked.isEmpty() ? 1.0 : asked.toDouble()));
}

TEST_CASE("The look at texts finds a cut one in every kind of widget") {
  QWidget window;
  window.resize(400, 400);
  narrow<QLabel>(window, 20, "A label");
  narrow<QPushButton>(window, 20, "A button");
  narrow<QCheckBox>(window, 30, "A box");
  narrow<QGroupBox>(window, 20, "A group");
  narrow<QComboBox>(window, 40).addItem("An item");
  narrow<QTabBar>(window, 20).addTab("A tab");
  QStandardItemModel model;
  model.setHorizontalHeaderLabels({"A head"});
  auto& list = narrow<QTreeView>(window, 200);
  list.setModel(&model);
  list.header()->setStretchLastSection(false);
  list.header()->setMinimumSectionSize(1);
  list.header()->resizeSection(0, 20);
  auto& label = narrow<QLabel>(window, 100, "A label of three or four lines that wraps");
  label.setWordWrap(true);
  narrow<QLabel>(window, 300, "A label with room enough");
  const trial::TextLook look = trial::lookAtTexts(window);
  CHECK(look.cut == Lines{"QLabel : A label", "QPushButton : A button", "QCheckBox : A box", "QGroupBox : A group",
                          "QComboBox : An item", "QTabBar : A tab", "QHeaderView : A head",
                          "QLabel : A label of three or four lines that wraps"});
  CHECK(look.texts == 9);
}

TEST_CASE("The look at texts finds the tools that a narrow bar hides") {
  QMainWindow window;
  QToolBar& bar = *window.addToolBar("Bar");
  bar.setObjectName("Bar");
  for (const char* text : {"First", "Second", "Third"}) bar.addAction(text);
  window.resize(80, 100);
  window.show();
  QCoreApplication::sendPostedEvents();
  CHECK_FALSE(trial::lookAtTexts(window).cut.empty());
}

}  // namespace trackloom
