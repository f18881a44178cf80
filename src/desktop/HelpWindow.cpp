#include "desktop/HelpWindow.h"

#include <QKeyEvent>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/HelpPage.h"
#include "desktop/HelpPanes.h"
#include "desktop/Make.h"
#include "desktop/ScreenFit.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr QSize Comfortable(1000, 700);
constexpr int PanesWidth = 280;
constexpr int MostZoom = 12;
constexpr int IconPixels = 20;

/// Where it covers little of the dialog that asked, which stands in the middle.
QPoint besideTheMiddle(const QRect& screen, const QSize& window) {
  return {screen.right() - window.width(), screen.top() + (screen.height() - window.height()) / 2};
}

}  // namespace

HelpWindow::HelpWindow(ShellOpener& opener)
    : opener_(opener), panes_(make<HelpPanes>(*this)), page_(make<HelpPage>(*this)) {
  setObjectName("HelpWindow");
  setAttribute(Qt::WA_QuitOnClose, false);
  page_.setObjectName("page");
  page_.setAccessibleName("Page");
  layOut();
  panes_.chosen = [this](const std::string& place, const QStringList& words) { follow(place, words); };
  page_.placeWanted = [this](const std::string& place) { follow(place, {}); };
  page_.addressWanted = [this](const QUrl& address) {
    opener_.open({"open", address.toEncoded().toStdString(), "", "", 1});
  };
  // The page tells of a new source before it is its own.
  connect(&page_, &QTextBrowser::historyChanged, [this] { pageChanged(); });
}

void HelpWindow::layOut() {
  auto& rows = make<QVBoxLayout>(*this);
  rows.setContentsMargins(0, 0, 0, 0);
  rows.setSpacing(0);
  auto& bar = make<QToolBar>(*this);
  addButtons(bar);
  rows.addWidget(&bar);
  auto& halves = make<QSplitter>(*this);
  halves.addWidget(&panes_);
  halves.addWidget(&page_);
  halves.setStretchFactor(1, 1);
  halves.setSizes({PanesWidth, Comfortable.width() - PanesWidth});
  rows.addWidget(&halves, 1);
  const QRect screen = this->screen()->availableGeometry();
  resize(Comfortable.boundedTo(screen.size() - frameOf(*this)));
  move(besideTheMiddle(screen, size() + frameOf(*this)));
}

void HelpWindow::addButtons(QToolBar& bar) {
  bar.setIconSize({IconPixels, IconPixels});
  bar.setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  const auto add = [&bar, this](const char* name, const char* caption, const QKeySequence& key, auto deed) {
    QAction& action = *bar.addAction(iconNamed(name), caption, this, deed);
    action.setObjectName(name);
    action.setShortcut(key);
    action.setToolTip(QString("%1 (%2)").arg(caption, key.toString(QKeySequence::NativeText)));
    return &action;
  };
  QAction* back = add("back", "Back", Qt::ALT | Qt::Key_Left, [this] { page_.backward(); });
  QAction* forward = add("forward", "Forward", Qt::ALT | Qt::Key_Right, [this] { page_.forward(); });
  add("home", "Home", Qt::ALT | Qt::Key_Home, [this] { follow(book_->firstPage, {}); });
  bar.addSeparator();
  add("larger", "Larger", Qt::CTRL | Qt::Key_Plus, [this] { zoom(1); });
  add("smaller", "Smaller", Qt::CTRL | Qt::Key_Minus, [this] { zoom(-1); });
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(&page_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(&page_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
  const auto on = [this](const QKeySequence& key, auto deed) {
    connect(&make<QShortcut>(*this, key), &QShortcut::activated, this, deed);
  };
  on(Qt::CTRL | Qt::Key_Equal, [this] { zoom(1); });
  on(Qt::CTRL | Qt::Key_0, [this] { zoom(-zoomed_); });
  on(QKeySequence::Find, [this] { panes_.showSearch(""); });
}

void HelpWindow::setBook(std::shared_ptr<const HelpBook> book) {
  book_ = std::move(book);
  page_.setBook(book_);
  panes_.setBook(book_);
  setWindowTitle(shown(book_->title));
}

void HelpWindow::comeForward() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

void HelpWindow::showPage(const std::string& place) {
  follow(place, {});
  page_.setFocus();
}

void HelpWindow::showContents() {
  panes_.showContents();
  if (page_.file().empty()) follow(book_->firstPage, {});
}

void HelpWindow::follow(const std::string& place, const QStringList& words) {
  page_.open(place);
  page_.mark(words);
}

void HelpWindow::pageChanged() {
  const QString title = page_.documentTitle();
  setWindowTitle(title.isEmpty() ? shown(book_->title) : title + " - " + shown(book_->title));
  page_.setAccessibleName(title.isEmpty() ? "Page" : title);
  panes_.showPlace(page_.place(), page_.file());
}

void HelpWindow::zoom(int steps) {
  const int wanted = std::clamp(zoomed_ + steps, -MostZoom / 2, MostZoom);
  page_.zoomIn(wanted - zoomed_);
  zoomed_ = wanted;
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  close();
}

}  // namespace trackloom
