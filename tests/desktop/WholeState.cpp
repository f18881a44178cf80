#include "desktop/WholeState.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMessageBox>
#include <QMetaProperty>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <map>
#include <set>

namespace trackloom::trial {

namespace {

using Lines = std::vector<std::string>;

/// What follows from screen, style and surroundings, or is told by another property as well.
const std::set<std::string> OfElsewhere{"baseSize",
                                        "cursor",
                                        "cursorRect",
                                        "focus",
                                        "font",
                                        "frameGeometry",
                                        "frameSize",
                                        "frameWidth",
                                        "fullScreen",
                                        "geometry",
                                        "height",
                                        "isActiveWindow",
                                        "layoutDirection",
                                        "locale",
                                        "maximized",
                                        "maximumHeight",
                                        "maximumWidth",
                                        "minimized",
                                        "minimumHeight",
                                        "minimumSizeHint",
                                        "minimumWidth",
                                        "modal",
                                        "normalGeometry",
                                        "objectName",
                                        "palette",
                                        "pos",
                                        "rect",
                                        "size",
                                        "sizeHint",
                                        "sizeIncrement",
                                        "visible",
                                        "width",
                                        "windowFilePath",
                                        "windowIcon",
                                        "windowOpacity",
                                        "x",
                                        "y",
                                        "childrenRect",
                                        "html",
                                        "markdown",
                                        "acceptRichText",
                                        "source",
                                        "document",
                                        "currentText",
                                        "displayText",
                                        "text length",
                                        "handleWidth",
                                        "updatesEnabled",
                                        "autoFillBackground",
                                        "inputMethodHints",
                                        "mouseTracking",
                                        "tabletTracking",
                                        "acceptDrops",
                                        "frameRect",
                                        "sizeAdjustPolicy ",
                                        "count",
                                        "currentRow",
                                        "contentsMargins",
                                        "undoAvailable"};

std::string ofSize(const QSize& size) {
  return std::to_string(size.width()) + "x" + std::to_string(size.height());
}

bool isPicture(const QIcon& icon) {
  return !icon.pixmap(16, 16).isNull();
}

std::string told(const QMetaProperty& property, const QVariant& value) {
  if (property.isEnumType()) {
    const int number = value.toInt();
    const QMetaEnum names = property.enumerator();
    return (property.isFlagType() ? names.valueToKeys(number) : QByteArray(names.valueToKey(number))).toStdString();
  }
  switch (value.typeId()) {
    case QMetaType::QSize:
      return ofSize(value.toSize());
    case QMetaType::QIcon:
      return isPicture(value.value<QIcon>()) ? "a picture" : "none";
    case QMetaType::QSizePolicy: {
      const auto policy = value.value<QSizePolicy>();
      return std::to_string(policy.horizontalPolicy()) + "," + std::to_string(policy.verticalPolicy());
    }
    default:
      return value.toString().replace('\n', '|').toStdString();
  }
}

template <class Widget>
std::unique_ptr<QWidget> fresh() {
  return std::make_unique<Widget>();
}

/// A fresh widget of the nearest kind that the toolkit has.
std::unique_ptr<QWidget> freshOf(const QMetaObject* kind) {
  static const std::map<std::string, std::unique_ptr<QWidget> (*)()> makers{{"QWidget", fresh<QWidget>},
                                                                            {"QLabel", fresh<QLabel>},
                                                                            {"QPushButton", fresh<QPushButton>},
                                                                            {"QComboBox", fresh<QComboBox>},
                                                                            {"QFrame", fresh<QFrame>},
                                                                            {"QProgressBar", fresh<QProgressBar>},
                                                                            {"QTextEdit", fresh<QTextEdit>},
                                                                            {"QTextBrowser", fresh<QTextBrowser>},
                                                                            {"QTreeWidget", fresh<QTreeWidget>},
                                                                            {"QListWidget", fresh<QListWidget>},
                                                                            {"QGroupBox", fresh<QGroupBox>},
                                                                            {"QToolBar", fresh<QToolBar>},
                                                                            {"QToolButton", fresh<QToolButton>},
                                                                            {"QSplitter", fresh<QSplitter>},
                                                                            {"QTabWidget", fresh<QTabWidget>},
                                                                            {"QLineEdit", fresh<QLineEdit>},
                                                                            {"QScrollArea", fresh<QScrollArea>},
                                                                            {"QMainWindow", fresh<QMainWindow>},
                                                                            {"QTreeView", fresh<QTreeView>},
                                                                            {"QScrollBar", fresh<QScrollBar>},
                                                                            {"QAbstractSlider", fresh<QAbstractSlider>},
                                                                            {"QCheckBox", fresh<QCheckBox>},
                                                                            {"QRadioButton", fresh<QRadioButton>},
                                                                            {"QTabBar", fresh<QTabBar>},
                                                                            {"QStatusBar", fresh<QStatusBar>},
                                                                            {"QDialog", fresh<QDialog>},
                                                                            {"QMessageBox", fresh<QMessageBox>},
                                                                            {"QFileDialog", fresh<QFileDialog>}};
  while (!makers.contains(kind->className())) kind = kind->superClass();
  return makers.at(kind->className())();
}

void tellProperties(const QWidget& widget, std::string& line) {
  const auto other = freshOf(widget.metaObject());
  other->ensurePolished();
  const QMetaObject& kind = *other->metaObject();
  for (int at = 0; at < kind.propertyCount(); ++at) {
    const QMetaProperty property = kind.property(at);
    const std::string name = property.name();
    if (OfElsewhere.contains(name) || (widget.isWindow() && name.ends_with("imumSize"))) continue;
    const std::string is = told(property, property.read(&widget));
    if (is != told(property, property.read(&*other))) line += " " + name + "=" + is;
  }
}

std::string entriesOf(const QComboBox& combo) {
  std::string entries;
  for (int entry = 0; entry < combo.count(); ++entry) entries += " [" + combo.itemText(entry).toStdString() + "]";
  return entries;
}

std::string buddyOf(const QLabel& label) {
  const QWidget* buddy = label.buddy();
  if (buddy == nullptr) return "";
  const auto* combo = qobject_cast<const QComboBox*>(buddy);
  return " for" + (combo == nullptr ? " " + buddy->objectName().toStdString() : entriesOf(*combo));
}

std::string headOf(const QTreeView& view) {
  const QHeaderView& head = *view.header();
  std::string told = " head";
  for (int column = 0; column < head.count(); ++column) {
    told += " [" + head.model()->headerData(column, Qt::Horizontal).toString().toStdString() + "]";
    if (head.sectionResizeMode(column) == QHeaderView::Stretch) told += " stretched";
    if (head.sectionResizeMode(column) == QHeaderView::ResizeToContents) told += " as its contents";
  }
  return told + (head.stretchLastSection() ? " to the edge" : "") + (head.sectionsMovable() ? " movable" : "");
}

std::string partsOf(const QTextEdit& text) {
  return " margin " + std::to_string(static_cast<int>(text.document()->documentMargin())) + " wraps " +
         std::to_string(text.wordWrapMode()) + (text.viewport()->autoFillBackground() ? "" : " without ground") +
         (text.sizePolicy().hasHeightForWidth() ? " as high as its width asks for" : "");
}

/// What no property tells.
std::string restOf(const QWidget& widget) {
  std::string told = widget.font().bold() ? " bold" : "";
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) told += buddyOf(*label);
  if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) told += entriesOf(*combo);
  if (const auto* view = qobject_cast<const QTreeView*>(&widget)) told += headOf(*view);
  if (const auto* text = qobject_cast<const QTextEdit*>(&widget)) told += partsOf(*text);
  if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget))
    for (int tab = 0; tab < tabs->count(); ++tab) told += " [" + tabs->tabText(tab).toStdString() + "]";
  if (widget.foregroundRole() == QPalette::Mid || widget.backgroundRole() == QPalette::Mid) told += " mid";
  for (const QByteArray& name : widget.dynamicPropertyNames())
    if (!name.startsWith("_q_"))
      told += " +" + name.toStdString() + "=" + widget.property(name).toString().toStdString();
  return told;
}

class Telling {
 public:
  Lines take() { return std::move(lines_); }

  void tell(QWidget& widget, int depth, const std::string& place) {
    told_.insert(&widget);
    std::string line = std::string(static_cast<std::size_t>(depth), ' ') + widget.metaObject()->className() + " " +
                       widget.objectName().toStdString() + place;
    tellProperties(widget, line);
    lines_.push_back(line + restOf(widget));
    if (QLayout* layout = widget.layout(); layout != nullptr && !ofTheToolkit(widget)) tell(*layout, depth + 2, "");
    if (const auto* splitter = qobject_cast<const QSplitter*>(&widget))
      for (int at = 0; at < splitter->count(); ++at)
        tell(*splitter->widget(at), depth + 2,
             " stretch " + std::to_string(splitter->widget(at)->sizePolicy().horizontalStretch()));
    if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget))
      for (int at = 0; at < tabs->count(); ++at) tell(*tabs->widget(at), depth + 2, "");
    if (const auto* bar = qobject_cast<const QToolBar*>(&widget)) tellActions(*bar, depth + 2);
    if (ofTheToolkit(widget)) return;
    for (QObject* child : widget.children())
      if (auto* inner = qobject_cast<QWidget*>(child); inner != nullptr && !told_.contains(inner) && !inner->isWindow())
        tell(*inner, depth + 2, " loose");
  }

 private:
  /// The inner parts of these are the toolkit's own.
  static bool ofTheToolkit(const QWidget& widget) {
    return qobject_cast<const QAbstractScrollArea*>(&widget) != nullptr ||
           qobject_cast<const QComboBox*>(&widget) != nullptr || qobject_cast<const QLineEdit*>(&widget) != nullptr ||
           qobject_cast<const QToolBar*>(&widget) != nullptr || qobject_cast<const QSplitter*>(&widget) != nullptr ||
           qobject_cast<const QTabWidget*>(&widget) != nullptr ||
           qobject_cast<const QMainWindow*>(&widget) != nullptr ||
           qobject_cast<const QStatusBar*>(&widget) != nullptr || qobject_cast<const QTabBar*>(&widget) != nullptr ||
           qobject_cast<const QAbstractSlider*>(&widget) != nullptr ||
           qobject_cast<const QMessageBox*>(&widget) != nullptr || qobject_cast<const QFileDialog*>(&widget) != nullptr;
  }

  void tell(QLayout& layout, int depth, const std::string& place) {
    const QMargins margins = layout.contentsMargins();
    std::string line = std::string(static_cast<std::size_t>(depth), ' ') + layout.metaObject()->className() + place +
                       " margins " + std::to_string(margins.left()) + "," + std::to_string(margins.top()) + "," +
                       std::to_string(margins.right()) + "," + std::to_string(margins.bottom());
    if (const auto* grid = qobject_cast<const QGridLayout*>(&layout)) {
      line += " spacing " + std::to_string(grid->horizontalSpacing()) + "," + std::to_string(grid->verticalSpacing()) +
              " stretch";
      for (int column = 0; column < grid->columnCount(); ++column)
        line += " " + std::to_string(grid->columnStretch(column));
    } else {
      line += " spacing " + std::to_string(layout.spacing());
    }
    lines_.push_back(line);
    for (int at = 0; at < layout.count(); ++at) tell(layout, at, depth + 2);
  }

  void tell(const QLayout& layout, int at, int depth) {
    QLayoutItem& item = *layout.itemAt(at);
    std::string place;
    if (const auto* box = qobject_cast<const QBoxLayout*>(&layout); box != nullptr && box->stretch(at) != 0)
      place += " stretch " + std::to_string(box->stretch(at));
    if (const auto* grid = qobject_cast<const QGridLayout*>(&layout)) {
      int row = 0;
      int column = 0;
      int rows = 0;
      int columns = 0;
      grid->getItemPosition(at, &row, &column, &rows, &columns);
      place += " at " + std::to_string(row) + "," + std::to_string(column);
      if (rows * columns > 1) place += " over " + std::to_string(rows) + "x" + std::to_string(columns);
    }
    if (item.alignment() != Qt::Alignment()) place += " aligned " + std::to_string(static_cast<int>(item.alignment()));
    if (item.widget() != nullptr) return tell(*item.widget(), depth, place);
    if (item.layout() != nullptr) return tell(*item.layout(), depth, place);
    lines_.push_back(std::string(static_cast<std::size_t>(depth), ' ') + "room" + place);
  }

  void tellActions(const QToolBar& bar, int depth) {
    for (QAction* action : bar.actions()) {
      if (QWidget* widget = bar.widgetForAction(action);
          widget != nullptr && action->objectName().isEmpty() && !action->isSeparator()) {
        tell(*widget, depth, action->isVisible() ? "" : " hidden");
        continue;
      }
      std::string line = std::string(static_cast<std::size_t>(depth), ' ');
      line += action->isSeparator()
                  ? "separator"
                  : "action " + action->objectName().toStdString() + " \"" + action->text().toStdString() + "\"";
      if (!action->shortcut().isEmpty()) line += " " + action->shortcut().toString().toStdString();
      if (action->toolTip() != action->text()) line += " (" + action->toolTip().toStdString() + ")";
      if (isPicture(action->icon())) line += " with a picture";
      if (!action->isEnabled()) line += " off";
      if (!action->isVisible()) line += " hidden";
      lines_.push_back(line);
    }
  }

  std::set<const QWidget*> told_;
  Lines lines_;
};

}  // namespace

std::vector<std::string> wholeState(QWidget& window) {
  Telling telling;
  telling.tell(window, 0, "");
  return telling.take();
}

}  // namespace trackloom::trial
