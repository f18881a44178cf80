#include "desktop/PanelDoor.h"

#include <QToolBar>
#include <algorithm>
#include <utility>

#include "desktop/Make.h"
#include "desktop/ScreenFit.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr std::chrono::seconds LookAgain{2};
constexpr const char* Name = "Front Panel";

bool anyIsPresent(const FrontPanel::Shelves& shelves) {
  return std::any_of(shelves.begin(), shelves.end(), [](const auto& shelf) { return shelf->present(); });
}

/// Boxes stand in the middle.
QRect rightHalfOf(QRect window) {
  window.setLeft(window.center().x());
  return window;
}

QToolButton& makeButton(QWidget& bar) {
  auto& button = make<QToolButton>(bar);
  button.setObjectName("frontPanel");
  button.setIcon(iconNamed("recorder"));
  button.setAccessibleName(Name);
  button.setToolTip("Front panel of the virtual recorder");
  return button;
}

}  // namespace

PanelDoor::PanelDoor(FrontPanel::Shelves shelves, ShellOpener& opener, std::function<std::string()> lastWord)
    : shelves_(std::move(shelves)), opener_(opener), lastWord_(std::move(lastWord)) {
  QObject::connect(&clock_, &QTimer::timeout, [this] { look(); });
}

void PanelDoor::standIn(QWidget& window) {
  auto* bar = window.findChild<QToolBar*>("StatusBar1");
  if (bar == nullptr || shelves_.empty()) return;
  QToolButton& button = makeButton(*bar);
  button_ = bar->addWidget(&button);
  button_->setVisible(false);
  QObject::connect(&button, &QToolButton::clicked, &window, [this, &window] { open(window); });
  look();
  clock_.start(LookAgain);
}

void PanelDoor::look() {
  if (looking_) return;
  looking_ = answers_.ask([shelves = shelves_] { return anyIsPresent(shelves); },
                          [this](bool present) {
                            looking_ = false;
                            if (button_) button_->setVisible(present);
                          });
}

void PanelDoor::open(QWidget& before) {
  if (panel_ == nullptr) {
    panel_ = std::make_unique<FrontPanel>(shelves_, opener_, lastWord_);
    giveWay(*panel_, roomFor(*panel_));
    panel_->adjustSize();
    centreOver(*panel_, rightHalfOf(before.frameGeometry()));
  }
  panel_->setWindowState(panel_->windowState() & ~Qt::WindowMinimized);
  panel_->show();
  panel_->raise();
  panel_->activateWindow();
}

}  // namespace trackloom
