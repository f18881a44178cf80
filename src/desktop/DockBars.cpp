#include "desktop/DockBars.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QToolBar>
#include <QToolButton>
#include <memory>
#include <unordered_map>

#include "desktop/Arrangement.h"
#include "desktop/BarParts.h"
#include "desktop/EventTap.h"
#include "desktop/Face.h"
#include "desktop/Make.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr int ToolIconPixels = 22;

/// The bars under construction, and later what their ties share.
class DockBars {
 public:
  DockBars(Face& face, QMainWindow& window, DockStudio& dock)
      : face_(face), window_(window), dock_(dock), entry_(face.entry()) {}

  void build();
  void reportArea() const;
  void followLook() const;
  void followArrangement();
  void storeArrangement();

 private:
  void addMenus(const BarDesign& bar);
  void addToolBar(const BarDesign& bar);
  void addStatusBar(const BarDesign& bar);
  void addTool(QToolBar& bar, const std::string& name);
  QToolBar& newBar(const BarDesign& design, Qt::ToolBarArea area);
  QAction& actionOf(const std::string& name);
  QAction& commandAction(Tool& tool);
  QMenu& menuOf(Tool& tool);
  void addShortcut(const Tool& tool);

  Face& face_;
  QMainWindow& window_;
  DockStudio& dock_;
  Entry entry_;
  std::unordered_map<std::string, QAction*> actions_;
  std::string arrangement_;
};

void DockBars::build() {
  // A bar hidden from a context menu could never be brought back.
  window_.setContextMenuPolicy(Qt::PreventContextMenu);
  window_.setIconSize(QSize(ToolIconPixels, ToolIconPixels));
  for (const BarDesign& bar : dock_.bars()) {
    if (bar.kind == BarKind::Menu) addMenus(bar);
    if (bar.kind == BarKind::Tools) addToolBar(bar);
    if (bar.kind == BarKind::Status) addStatusBar(bar);
  }
}

void DockBars::addMenus(const BarDesign& bar) {
  window_.menuBar()->setObjectName(QString::fromStdString(bar.name));
  for (const std::string& name : bar.tools) window_.menuBar()->addAction(&actionOf(name));
}

QAction& DockBars::actionOf(const std::string& name) {
  if (const auto known = actions_.find(name); known != actions_.end()) return *known->second;
  Tool& tool = dock_.tool(name);
  const bool opens = !tool.design.children.empty();
  QAction& action = opens ? *menuOf(tool).menuAction() : commandAction(tool);
  actions_[name] = &action;
  action.setIcon(iconNamed(tool.design.picture));
  const auto follow = [&tool, &action] { action.setEnabled(tool.Enabled); };
  follow();
  face_.keep(tool.changed.connect(follow));
  return action;
}

QAction& DockBars::commandAction(Tool& tool) {
  auto& action = make<QAction>(window_, shown(tool.design.caption));
  QObject::connect(&action, &QAction::triggered,
                   [&dock = dock_, entry = entry_, name = tool.Name()] { entry([&] { dock.click(name); }); });
  addShortcut(tool);
  return action;
}

/// The key is not the action's own: a disabled tool must still keep it from whatever has the focus.
void DockBars::addShortcut(const Tool& tool) {
  if (tool.design.shortcut.empty()) return;
  const QKeySequence keys(QString::fromStdString(tool.design.shortcut));
  auto& shortcut = make<QShortcut>(window_, keys);
  QObject::connect(&shortcut, &QShortcut::activated,
                   [&dock = dock_, entry = entry_, name = tool.Name()] { entry([&] { dock.click(name); }); });
}

QMenu& DockBars::menuOf(Tool& tool) {
  auto& menu = make<QMenu>(window_);
  menu.setTitle(shown(tool.design.caption));
  for (const std::string& child : tool.design.children) {
    QAction& action = actionOf(child);
    menu.addAction(&action);
    const QKeySequence keys(QString::fromStdString(dock_.tool(child).design.shortcut));
    if (!keys.isEmpty())
      action.setText(shown(dock_.tool(child).design.caption) + '\t' + keys.toString(QKeySequence::NativeText));
  }
  QObject::connect(&menu, &QMenu::aboutToShow,
                   [&dock = dock_, entry = entry_, name = tool.Name()] { entry([&] { dock.openMenu(name); }); });
  return menu;
}

QToolBar& DockBars::newBar(const BarDesign& design, Qt::ToolBarArea area) {
  auto& bar = make<QToolBar>(window_, shown(design.name));
  bar.setObjectName(shown(design.name));
  bar.setAccessibleName(shown(design.name));
  bar.setFloatable(false);
  bar.setAllowedAreas(Qt::TopToolBarArea | Qt::BottomToolBarArea);
  if (!window_.findChildren<QToolBar*>().isEmpty()) window_.addToolBarBreak(area);
  window_.addToolBar(area, &bar);
  return bar;
}

void DockBars::addToolBar(const BarDesign& design) {
  QToolBar& bar = newBar(design, Qt::TopToolBarArea);
  bar.setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  for (const std::string& name : design.tools) addTool(bar, name);
}

void DockBars::addTool(QToolBar& bar, const std::string& name) {
  Tool& tool = dock_.tool(name);
  if (tool.design.kind == ToolKind::Combo) {
    bar.addWidget(&makeComboTool(face_, bar, dock_, tool));
    return;
  }
  QAction& action = actionOf(name);
  bar.addAction(&action);
  if (auto* button = qobject_cast<QToolButton*>(bar.widgetForAction(&action)))
    button->setPopupMode(QToolButton::InstantPopup);
}

void DockBars::addStatusBar(const BarDesign& design) {
  QToolBar& bar = newBar(design, Qt::BottomToolBarArea);
  std::vector<Tool*> tools;
  for (const std::string& name : design.tools) tools.push_back(&dock_.tool(name));
  bar.addWidget(&makeStatusRow(face_, bar, tools));
}

void DockBars::reportArea() const {
  const QRect area = window_.centralWidget()->geometry();
  entry_([&] {
    dock_.reportArea(
        {static_cast<double>(area.x() * TwipsPerPixel), static_cast<double>(area.y() * TwipsPerPixel),
         static_cast<double>(area.width() * TwipsPerPixel), static_cast<double>(area.height() * TwipsPerPixel)},
        window_.width() * TwipsPerPixel);
  });
}

void DockBars::followLook() const {
  constexpr QRgb PlainGrey = 0xFFD4D0C8;
  const QPalette palette = dock_.UseThemeColours == 0 ? QPalette(QColor(PlainGrey)) : QPalette();
  window_.menuBar()->setPalette(palette);
  for (QToolBar* bar : window_.findChildren<QToolBar*>()) bar->setPalette(palette);
}

void DockBars::followArrangement() {
  if (dock_.Arrangement == arrangement_) return;
  arrangement_ = dock_.Arrangement;
  applyArrangement(window_, arrangement_);
}

void DockBars::storeArrangement() {
  arrangement_ = arrangementOf(window_);
  dock_.Arrangement = arrangement_;
}

}  // namespace

void tieBars(Face& face, QMainWindow& window, DockStudio& dock) {
  const auto bars = std::make_shared<DockBars>(face, window, dock);
  bars->build();
  const auto follow = [bars, &window, &dock] {
    bars->followLook();
    bars->followArrangement();
    for (QToolBar* bar : window.findChildren<QToolBar*>()) bar->setEnabled(dock.Enabled);
    window.menuBar()->setEnabled(dock.Enabled);
  };
  follow();
  face.keep(dock.changed.connect(follow));
  face.keep(dock.arrangementWanted.connect([bars] { bars->storeArrangement(); }));
  // The area is told once all bars have found their places, not in the middle of their moves.
  const auto report = [bars, entry = face.entry()](const QEvent& event) {
    if (event.type() == QEvent::Resize || event.type() == QEvent::Move) entry.later([bars] { bars->reportArea(); });
    return false;
  };
  make<EventTap>(*window.centralWidget(), report);
  make<EventTap>(window, report);
  // While there is nothing to work on, the focus goes to the bars; it must not stay there, where keys change the drive.
  const auto takeFocus = [&area = *window.centralWidget()] {
    if (area.isEnabled()) area.setFocus();
  };
  make<EventTap>(*window.centralWidget(), [takeFocus](const QEvent& event) {
    if (event.type() == QEvent::EnabledChange) takeFocus();
    return false;
  });
  make<EventTap>(window, [takeFocus](const QEvent& event) {
    if (event.type() == QEvent::Show) takeFocus();
    return false;
  });
}

}  // namespace trackloom
