#include "desktop/Binder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <set>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/ControlVisitor.h"
#include "controls/Frame.h"
#include "controls/ImageList.h"
#include "controls/Label.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"
#include "controls/StatusBar.h"
#include "controls/TabStrip.h"
#include "controls/Timer.h"
#include "controls/VScrollBar.h"
#include "desktop/DockBars.h"
#include "desktop/Face.h"
#include "desktop/FolderTie.h"
#include "desktop/ListTie.h"
#include "desktop/Make.h"
#include "desktop/NoticeReading.h"
#include "desktop/PictureView.h"
#include "desktop/QtDesk.h"
#include "desktop/Shown.h"
#include "desktop/TextTie.h"
#include "desktop/ToldBar.h"
#include "desktop/Wheel.h"

namespace trackloom {

namespace {

constexpr int UnusedFrame = 2;
/// In pixels: the picture of an entry makes its box no higher than a text does.
constexpr int SampleSide = 14;

/// Finds the widget of each control and ties the two: one overload for each kind.
class Binder final : public ControlVisitor {
 public:
  explicit Binder(Face& face) : face_(face), entry_(face.entry()) {}

  std::vector<std::string> run();

  void visit(Button& control) override;
  void visit(CheckBox& control) override;
  void visit(ComboBox& control) override;
  void visit(DockStudio& control) override;
  void visit(FolderTreeview& control) override;
  void visit(Frame& control) override;
  void visit(Label& control) override;
  void visit(ListView& control) override;
  void visit(OptionButton& control) override;
  void visit(PictureBox& control) override;
  void visit(ProgressBarEx& control) override;
  void visit(StatusBar& control) override;
  void visit(TabStrip& control) override;
  void visit(TextBox& control) override;
  void visit(Timer& control) override;
  void visit(VScrollBar& control) override;

 private:
  /// Null, with a word about it, where the design has no such widget.
  template <class Widget>
  Widget* find(Control& control);
  /// Shows the control's state now and after each of its changes.
  template <class Shower>
  void follow(Control& control, QWidget& widget, Shower show);
  void reportStrayWidgets();

  Face& face_;
  Entry entry_;
  std::vector<std::string> problems_;
};

std::vector<std::string> Binder::run() {
  std::set<std::string> names;
  for (Control* control : face_.form()->controls()) {
    if (!names.insert(control->name()).second) problems_.push_back(control->name() + ": two controls of this name");
    control->accept(*this);
  }
  reportStrayWidgets();
  return std::move(problems_);
}

template <class Widget>
Widget* Binder::find(Control& control) {
  const auto named = face_.window().findChildren<QWidget*>(QString::fromStdString(control.name()));
  if (named.isEmpty()) problems_.push_back(control.name() + ": no widget of this name");
  if (named.size() > 1) problems_.push_back(control.name() + ": more than one widget of this name");
  if (named.isEmpty()) return nullptr;
  auto* widget = qobject_cast<Widget*>(named.front());
  if (widget == nullptr) {
    problems_.push_back(control.name() + ": the widget is a " + named.front()->metaObject()->className() + ", not a " +
                        Widget::staticMetaObject.className());
    return nullptr;
  }
  face_.bound(control, *widget);
  return widget;
}

template <class Shower>
void Binder::follow(Control& control, QWidget& widget, Shower show) {
  auto showAll = [&control, &widget, show]() mutable {
    widget.setEnabled(control.Enabled);
    widget.setVisible(control.Visible);
    show();
  };
  showAll();
  face_.keep(control.changed.connect(showAll));
  face_.keep(control.focusRequested.connect([&widget] { widget.setFocus(Qt::OtherFocusReason); }));
}

void Binder::visit(Button& control) {
  auto* button = find<QPushButton>(control);
  if (button == nullptr) return;
  button->setAutoDefault(false);
  follow(control, *button, [&control, button] {
    button->setText(shown(control.Caption.get()));
    button->setDefault(control.Default);
  });
  QObject::connect(button, &QPushButton::clicked,
                   [&control, entry = entry_] { entry([&control] { control.click(); }); });
}

void Binder::visit(CheckBox& control) {
  auto* box = find<QCheckBox>(control);
  if (box == nullptr) return;
  follow(control, *box, [&control, box] {
    box->setText(shown(control.Caption.get()));
    box->setChecked(control.Value);
  });
  QObject::connect(box, &QCheckBox::clicked, [&control, entry = entry_] { entry([&control] { control.click(); }); });
}

/// The Tab key comes to a group of options once, and then to the chosen one; the arrow keys go through the others.
void leaveOneStop(QRadioButton& chosen) {
  for (QRadioButton* button : chosen.window()->findChildren<QRadioButton*>())
    if (button->group() == chosen.group() && (chosen.group() != nullptr || button->parent() == chosen.parent()))
      button->setFocusPolicy(button == &chosen ? Qt::StrongFocus : Qt::ClickFocus);
}

void Binder::visit(OptionButton& control) {
  auto* button = find<QRadioButton>(control);
  if (button == nullptr) return;
  QObject::connect(button, &QRadioButton::toggled, [button](bool chosen) {
    if (chosen) leaveOneStop(*button);
  });
  follow(control, *button, [&control, button] {
    button->setText(shown(control.Caption.get()));
    if (control.selected()) button->setChecked(true);
  });
  QObject::connect(button, &QRadioButton::clicked,
                   [&control, entry = entry_] { entry([&control] { control.click(); }); });
}

QIcon pictureOf(const ComboBox& combo, const ComboBox::Item& item) {
  return combo.Images == nullptr || item.image == 0 ? QIcon() : iconNamed(combo.Images->Picture(item.image));
}

void Binder::visit(ComboBox& control) {
  auto* combo = find<QComboBox>(control);
  if (combo == nullptr) return;
  keepStrayWheelFrom(*combo);
  combo->setIconSize({SampleSide, SampleSide});
  follow(control, *combo, [&control, combo, known = std::vector<ComboBox::Item>()]() mutable {
    if (known != control.items()) {
      known = control.items();
      combo->clear();
      for (const ComboBox::Item& item : known) combo->addItem(pictureOf(control, item), shown(item.text));
    }
    combo->setCurrentIndex(control.ListIndex());
  });
  QObject::connect(combo, &QComboBox::activated,
                   [&control, entry = entry_](int index) { entry([&control, index] { control.choose(index); }); });
}

void Binder::visit(DockStudio& control) {
  auto* window = qobject_cast<QMainWindow*>(&face_.window());
  if (window == nullptr) return problems_.push_back(control.name() + ": the window is no main window");
  face_.bound(control, *window);
  tieBars(face_, *window, control);
}

void Binder::visit(FolderTreeview& control) {
  auto* tree = find<QTreeView>(control);
  if (tree == nullptr) return;
  follow(control, *tree, [] {});
  tieFolders(face_, *tree, control);
}

void Binder::visit(Frame& control) {
  auto* box = find<QGroupBox>(control);
  if (box == nullptr) return;
  follow(control, *box, [&control, box] { box->setTitle(shown(control.Caption.get())); });
}

/// A label that tells what happens now is heard at each new text.
void showText(QLabel& label, const QString& text) {
  if (label.text() == text) return;
  label.setText(text);
  if (label.isVisible()) tellNotice(label);
}

void Binder::visit(Label& control) {
  auto* label = find<QLabel>(control);
  if (label == nullptr) return;
  label->setTextFormat(Qt::PlainText);
  follow(control, *label, [&control, label] {
    // Only a label that leads to a widget knows access keys.
    const std::string& caption = control.Caption;
    showText(*label, label->buddy() == nullptr ? foldCaption(caption) : shown(caption));
  });
}

void Binder::visit(ListView& control) {
  auto* view = find<QTreeView>(control);
  if (view == nullptr) return;
  follow(control, *view, [] {});
  tieList(face_, *view, control);
}

void Binder::visit(PictureBox& control) {
  auto* widget = find<QWidget>(control);
  if (widget == nullptr) return;
  // Panels that take turns in one place keep it at the size of the largest.
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
  auto* view = dynamic_cast<PictureView*>(widget);
  follow(control, *widget, [&control, view] {
    if (view != nullptr) view->setPicture(pictureNamed(control.Picture));
  });
}

void Binder::visit(ProgressBarEx& control) {
  auto* bar = find<QProgressBar>(control);
  if (bar == nullptr) return;
  auto* told = dynamic_cast<ToldBar*>(bar);
  follow(control, *bar, [&control, bar, told] {
    // An empty range would show a bar that never rests.
    bar->setRange(0, std::max(control.Max(), 1));
    if (told == nullptr)
      bar->setValue(control.Value());
    else
      told->showStep(control.Value());
  });
}

void Binder::visit(StatusBar& control) {
  auto* bar = find<QStatusBar>(control);
  if (bar == nullptr) return;
  bar->setSizeGripEnabled(false);
  // The bar leaves room for a frame that the look does not draw, and would stand out of line.
  bar->setAttribute(Qt::WA_ContentsMarginsRespectsSafeArea, false);
  bar->setContentsMargins(-UnusedFrame, 0, 0, 0);
  std::vector<QLabel*> panels;
  for (std::size_t panel = 1; panel <= control.count(); ++panel) {
    panels.push_back(&make<QLabel>(*bar));
    panels.back()->setTextFormat(Qt::PlainText);
    bar->addWidget(panels.back(), 1);
  }
  follow(control, *bar, [&control, panels] {
    for (std::size_t panel = 1; panel <= panels.size(); ++panel)
      panels[panel - 1]->setText(shown(control.PanelText(panel)));
  });
}

void Binder::visit(TabStrip& control) {
  auto* tabs = find<QTabBar>(control);
  if (tabs == nullptr) return;
  for (const std::string& caption : control.captions()) tabs->addTab(shown(caption));
  follow(control, *tabs, [&control, tabs] { tabs->setCurrentIndex(control.SelectedTab - 1); });
  QObject::connect(tabs, &QTabBar::currentChanged,
                   [&control, entry = entry_](int index) { entry([&control, index] { control.choose(index + 1); }); });
}

void Binder::visit(TextBox& control) {
  auto* line = find<QLineEdit>(control);
  if (line == nullptr) return;
  follow(control, *line, [&control, line] {
    line->setReadOnly(control.Locked);
    const QString text = shown(control.Text.get());
    if (line->text() != text) line->setText(text);
  });
  tieText(face_, *line, control);
}

void Binder::visit(Timer& control) {
  auto& clock = make<QTimer>(face_.window());
  // The toolkit's usual timers may come a twentieth early, and no pause of the program is meant to be shorter than it
  // says.
  clock.setTimerType(Qt::PreciseTimer);
  clock.setInterval(control.interval());
  const auto follow = [&control, &clock] {
    if (control.Enabled != clock.isActive()) control.Enabled ? clock.start() : clock.stop();
  };
  follow();
  face_.keep(control.changed.connect(follow));
  face_.atCut([&clock] { clock.stop(); });
  QObject::connect(&clock, &QTimer::timeout,
                   [&control, entry = entry_] { entry.byItself([&control] { control.tick(); }); });
}

void Binder::visit(VScrollBar& control) {
  auto* bar = find<QScrollBar>(control);
  if (bar == nullptr) return;
  bar->setRange(control.min(), control.max());
  bar->setPageStep(1);
  keepStrayWheelFrom(*bar);
  follow(control, *bar, [&control, bar] { bar->setValue(control.Value); });
  QObject::connect(bar, &QScrollBar::valueChanged,
                   [&control, entry = entry_](int value) { entry([&control, value] { control.scrollTo(value); }); });
}

bool isOneOf(const QWidget& widget, std::initializer_list<const char*> kinds) {
  return std::any_of(kinds.begin(), kinds.end(), [&](const char* kind) { return widget.inherits(kind); });
}

/// A widget that only means something through a control, and is no part of another widget.
bool needsControl(const QWidget& widget) {
  if (widget.objectName().isEmpty() || widget.objectName().startsWith("qt_")) return false;
  for (const QWidget* around = widget.parentWidget(); around != nullptr; around = around->parentWidget())
    if (isOneOf(*around, {"QTabBar", "QComboBox", "QAbstractScrollArea", "QStatusBar", "QToolBar"})) return false;
  if (dynamic_cast<const PictureView*>(&widget) != nullptr) return true;
  return isOneOf(widget, {"QAbstractButton", "QLabel", "QLineEdit", "QComboBox", "QAbstractItemView", "QProgressBar",
                          "QTabBar", "QAbstractSlider", "QStatusBar", "QGroupBox"});
}

void Binder::reportStrayWidgets() {
  const auto& controls = face_.form()->controls();
  for (const QWidget* widget : face_.window().findChildren<QWidget*>()) {
    const std::string name = widget->objectName().toStdString();
    const auto sameName = [&](const Control* control) { return control->name() == name; };
    if (needsControl(*widget) && std::none_of(controls.begin(), controls.end(), sameName))
      problems_.push_back(name + ": a widget without a control");
  }
}

}  // namespace

std::vector<std::string> bindControls(Face& face) {
  return Binder(face).run();
}

std::vector<std::string> bindingProblems(Form& form, const std::vector<FaceDesign>& designs) {
  QtDesk desk(designs);
  return Face::make(desk, form)->problems();
}

}  // namespace trackloom
