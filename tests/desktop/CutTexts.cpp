#include "desktop/CutTexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QStyleOptionGroupBox>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>

#include "desktop/ParagraphButton.h"

namespace trackloom::trial {

namespace {

constexpr int Endless = 100000;

class Look {
 public:
  TextLook found;

  void at(const QWidget& widget);

 private:
  void compare(const QWidget& widget, const QString& text, QSize room, bool wraps = false);
  void label(const QLabel& label);
  void button(const QAbstractButton& button);
  void tool(const QToolButton& button);
  void group(const QGroupBox& box);
  void combo(const QComboBox& box);
  void tabs(const QTabBar& bar);
  void heads(const QHeaderView& heads);
  void line(const QLineEdit& line);
  void menuBar(const QMenuBar& bar);
};

void Look::compare(const QWidget& widget, const QString& text, QSize room, bool wraps) {
  if (text.isEmpty()) return;
  ++found.texts;
  const int flags = Qt::TextShowMnemonic | (wraps ? Qt::TextWordWrap : 0);
  const QRect paper(0, 0, wraps ? room.width() : Endless, Endless);
  const QSize needed = widget.fontMetrics().boundingRect(paper, flags, text).size();
  if (needed.width() <= room.width() && needed.height() <= room.height()) return;
  found.cut.push_back(std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString() + ": " +
                      text.toStdString());
}

void Look::label(const QLabel& label) {
  compare(label, label.text(), label.contentsRect().size(), label.wordWrap());
}

void Look::button(const QAbstractButton& button) {
  QStyleOptionButton option;
  option.initFrom(&button);
  option.text = button.text();
  const auto inside = [&](QStyle::SubElement part) {
    return button.style()->subElementRect(part, &option, &button).intersected(button.rect()).size();
  };
  const bool wraps = dynamic_cast<const ParagraphRadioButton*>(&button) != nullptr ||
                     dynamic_cast<const ParagraphCheckBox*>(&button) != nullptr;
  if (qobject_cast<const QPushButton*>(&button) != nullptr)
    compare(button, button.text(), inside(QStyle::SE_PushButtonContents));
  else if (qobject_cast<const QRadioButton*>(&button) != nullptr)
    compare(button, button.text(), inside(QStyle::SE_RadioButtonContents), wraps);
  else
    compare(button, button.text(), inside(QStyle::SE_CheckBoxContents), wraps);
}

void Look::tool(const QToolButton& button) {
  const bool under = button.toolButtonStyle() == Qt::ToolButtonTextUnderIcon;
  compare(button, button.text(), button.size() - QSize(2, under ? button.iconSize().height() : 0));
}

void Look::group(const QGroupBox& box) {
  QStyleOptionGroupBox option;
  option.initFrom(&box);
  option.text = box.title();
  option.subControls = QStyle::SC_GroupBoxLabel | QStyle::SC_GroupBoxFrame;
  const auto part = box.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &box);
  compare(box, box.title(), part.intersected(box.rect()).size());
}

void Look::combo(const QComboBox& box) {
  QStyleOptionComboBox option;
  option.initFrom(&box);
  option.subControls = QStyle::SC_All;
  const auto field = box.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box);
  for (int item = 0; item < box.count(); ++item) compare(box, box.itemText(item), field.size());
}

void Look::tabs(const QTabBar& bar) {
  const int air = bar.style()->pixelMetric(QStyle::PM_TabBarTabHSpace, nullptr, &bar);
  for (int tab = 0; tab < bar.count(); ++tab)
    compare(bar, bar.tabText(tab), bar.tabRect(tab).intersected(bar.rect()).size() - QSize(air, 0));
}

void Look::heads(const QHeaderView& heads) {
  const int air = heads.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &heads);
  for (int column = 0; column < heads.count(); ++column)
    compare(heads, heads.model()->headerData(column, heads.orientation()).toString(),
            QSize(heads.sectionSize(column) - 2 * air, heads.height()));
}

void Look::line(const QLineEdit& line) {
  QStyleOptionFrame option;
  option.initFrom(&line);
  option.lineWidth = line.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &line);
  const QRect inside = line.style()->subElementRect(QStyle::SE_LineEditContents, &option, &line);
  compare(line, line.text(), QSize(Endless, inside.height()));
}

void Look::menuBar(const QMenuBar& bar) {
  for (QAction* action : bar.actions()) {
    compare(bar, action->text(), bar.actionGeometry(action).intersected(bar.rect()).size());
    for (QAction* entry : action->menu()->actions())
      compare(*action->menu(), entry->text(), action->menu()->actionGeometry(entry).size());
  }
}

void Look::at(const QWidget& widget) {
  if (const auto* shown = qobject_cast<const QLabel*>(&widget)) return label(*shown);
  if (const auto* shown = qobject_cast<const QToolButton*>(&widget)) return tool(*shown);
  if (const auto* shown = qobject_cast<const QAbstractButton*>(&widget)) return button(*shown);
  if (const auto* shown = qobject_cast<const QGroupBox*>(&widget)) return group(*shown);
  if (const auto* shown = qobject_cast<const QComboBox*>(&widget)) return combo(*shown);
  if (const auto* shown = qobject_cast<const QTabBar*>(&widget)) return tabs(*shown);
  if (const auto* shown = qobject_cast<const QHeaderView*>(&widget)) return heads(*shown);
  if (const auto* shown = qobject_cast<const QLineEdit*>(&widget)) return line(*shown);
  if (const auto* shown = qobject_cast<const QMenuBar*>(&widget)) return menuBar(*shown);
  if (const auto* bar = qobject_cast<const QProgressBar*>(&widget); bar != nullptr && bar->isTextVisible())
    compare(*bar, bar->text(), bar->size());
}

/// The tools of a bar that is too narrow for them hide behind a button at its end.
void findHiddenTools(const QToolBar& bar, std::vector<std::string>& cut) {
  for (QAction* action : bar.actions())
    if (!bar.widgetForAction(action)->isVisibleTo(&bar))
      cut.push_back("hidden tool of " + bar.objectName().toStdString() + ": " + action->text().toStdString());
}

}  // namespace

TextLook lookAtTexts(QWidget& window) {
  Look look;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(&window) || widget->window() != &window) continue;
    look.at(*widget);
    if (const auto* bar = qobject_cast<const QToolBar*>(widget)) findHiddenTools(*bar, look.found.cut);
  }
  return look.found;
}

}  // namespace trackloom::trial
