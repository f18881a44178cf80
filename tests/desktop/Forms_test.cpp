#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <catch2/catch.hpp>
#include <map>
#include <set>

#include "desktop/Binder.h"
#include "desktop/Trial.h"
#include "fakes/Machine.h"

namespace trackloom {

using Lines = std::vector<std::string>;

namespace {

/// Every form of the program on a machine of its own, loaded.
struct AllForms {
  AllForms() {
    machine.startQuietly();
    machine.newLayout(AudioLayout);
    ProgramForms& forms = machine.program().forms();
    keep(machine.window());
    keep(forms.shell.frmOpen.get());
    keep(forms.shell.frmNOCD.get());
    keep(forms.shell.frmAbout.get());
    keep(forms.shell.frmDefaultOptions.get());
    keep(forms.layout.frmNewOption.get());
    keep(forms.layout.frmFiles.get());
    keep(forms.layout.frmSave.get());
    keep(forms.layout.frmOpenLayout.get());
    keep(forms.layout.frmFolder.get());
    keep(forms.layout.frmChooseSort.get());
    keep(forms.writing.frmOptions.get());
    keep(forms.writing.frmStatus.get());
    keep(forms.writing.frmDone.get());
    keep(forms.writing.frmError.get());
    keep(forms.writing.frmISO.get());
    keep(forms.writing.frmDiskInfo.get());
    keep(forms.writing.frmErase.get());
    keep(forms.search.frmSearch.get());
    keep(forms.printing.frmReadStatus.get());
    keep(forms.printing.frmPrintList.get());
    keep(forms.ripper.frmRipMain.get());
  }

  fakes::Machine machine;
  std::vector<std::shared_ptr<Form>> all;

 private:
  void keep(Form& form) { all.push_back(form.keepAlive()); }
};

bool takesFocus(const QWidget& widget) {
  return (widget.focusPolicy() & Qt::TabFocus) != 0 && !widget.isWindow();
}

/// What a screen reader would find without a name among the widgets that the Tab key reaches.
Lines namelessWidgets(const QWidget& window) {
  Lines nameless;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (!takesFocus(*widget) || widget->window() != &window) continue;
    const QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(widget);
    if (interface == nullptr || interface->text(QAccessible::Name).isEmpty())
      nameless.push_back(std::string(widget->metaObject()->className()) + " " + widget->objectName().toStdString());
  }
  return nameless;
}

/// Access keys that two controls of one form want.
Lines doubleKeys(const Form& form) {
  std::map<char, std::string> owners;
  Lines doubles;
  for (const Control* control : form.controls()) {
    const auto* button = dynamic_cast<const Button*>(control);
    if (button == nullptr || button->Caption.get().find('&') == std::string::npos) continue;
    const char key = button->Caption.get()[button->Caption.get().find('&') + 1];
    if (!owners.emplace(key, control->name()).second) doubles.push_back(owners[key] + " and " + control->name());
  }
  return doubles;
}

}  // namespace

TEST_CASE("Every form of the program fits its design") {
  const AllForms forms;
  std::set<std::string> names;
  for (const auto& form : forms.all) {
    INFO(form->name());
    CHECK(bindingProblems(*form) == Lines());
    CHECK(doubleKeys(*form) == Lines());
    names.insert(form->name());
  }
  for (const FaceDesign& design : faceDesigns()) {
    INFO(design.form);
    CHECK(names.count(design.form) == 1);
  }
}

TEST_CASE("Every widget that the Tab key reaches has a name for a screen reader") {
  const AllForms forms;
  for (const auto& form : forms.all) {
    INFO(form->name());
    QtDesk desk;
    desk.show(*form);
    CHECK(namelessWidgets(*desk.window(*form)) == Lines());
  }
}

TEST_CASE("The walk for names finds a widget without one") {
  QWidget window;
  QLineEdit line(&window);
  line.setObjectName("txtName");
  CHECK(namelessWidgets(window) == Lines{"QLineEdit txtName"});
}

TEST_CASE("No dialog cuts a text when the font is a quarter larger") {
  const QFont usual = QApplication::font();
  QFont larger = usual;
  larger.setPointSizeF(usual.pointSizeF() * 1.25);
  QApplication::setFont(larger);
  const AllForms forms;
  for (const auto& form : forms.all) {
    QtDesk desk;
    desk.show(*form);
    QTest::qWait(1);
    for (const QWidget* widget : desk.window(*form)->findChildren<QPushButton*>()) {
      INFO(form->name() << " " << widget->objectName().toStdString());
      CHECK(widget->width() >= widget->minimumSizeHint().width());
      CHECK(widget->height() >= widget->minimumSizeHint().height());
    }
  }
  QApplication::setFont(usual);
}

}  // namespace trackloom
