#include "desktop/PrintPreview.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QScrollBar>
#include <QShortcut>
#include <algorithm>
#include <iterator>
#include <utility>

#include "desktop/Make.h"
#include "desktop/NoticeReading.h"
#include "desktop/Shown.h"
#include "desktop/Wheel.h"

namespace trackloom {

namespace {

constexpr int Percents[] = {25, 50, 75, 100, 125, 150, 200, 400};
constexpr int PageWidthEntry = static_cast<int>(std::size(Percents));
constexpr int WholePageEntry = PageWidthEntry + 1;

QLabel& makeLabel(const char* caption, QWidget& buddy, QWidget& bar) {
  auto& label = make<QLabel>(bar, caption);
  label.setBuddy(&buddy);
  return label;
}

}  // namespace

PrintPreview::PrintPreview() : view_(*std::make_unique<PageView>().release()) {
  scroll_.setWidget(&view_);
  build();
  connectBar();
  addKeys();
}

void PrintPreview::build() {
  auto& rows = make<QVBoxLayout>(*this);
  rows.setContentsMargins(0, 0, 0, 0);
  rows.setSpacing(0);
  rows.addWidget(buildBar());
  rows.addWidget(&scroll_, 1);
  rows.addWidget(&words_);
  scroll_.setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  scroll_.setBackgroundRole(QPalette::Mid);
  scroll_.setFrameShape(QFrame::NoFrame);
  scroll_.setFocusPolicy(Qt::NoFocus);
  scroll_.setFocusProxy(&view_);
  view_.installEventFilter(this);
  words_.setTextFormat(Qt::PlainText);
  words_.setWordWrap(true);
  words_.setMargin(8);
  words_.setProperty("told", true);
  words_.hide();
  setFocusProxy(&view_);
}

QWidget* PrintPreview::buildBar() {
  auto& bar = make<QWidget>(*this);
  auto& row = make<QHBoxLayout>(bar);
  row.setContentsMargins(8, 8, 8, 8);
  row.setSpacing(8);
  print_.setIcon(iconNamed("print"));
  save_.setIcon(iconNamed("Save"));
  for (const int percent : Percents) zoom_.addItem(QString::number(percent) + " %");
  zoom_.addItems({"Page width", "Whole page"});
  paper_.addItems({"Letter", "A4"});
  for (QPushButton* button : {&print_, &save_, &previous_, &next_}) button->setAutoDefault(false);
  for (QComboBox* combo : {&zoom_, &paper_}) keepStrayWheelFrom(*combo);
  for (QWidget* widget : std::initializer_list<QWidget*>{&print_, &save_, &previous_, &number_, &next_})
    row.addWidget(widget);
  row.addStretch();
  row.addWidget(&makeLabel("&Zoom:", zoom_, bar));
  row.addWidget(&zoom_);
  row.addWidget(&makeLabel("Pap&er:", paper_, bar));
  row.addWidget(&paper_);
  return &bar;
}

void PrintPreview::connectBar() {
  connect(&print_, &QPushButton::clicked, [this] { printWanted(); });
  connect(&save_, &QPushButton::clicked, [this] { saveWanted(); });
  connect(&previous_, &QPushButton::clicked, [this] { turnTo(page_ - 1); });
  connect(&next_, &QPushButton::clicked, [this] { turnTo(page_ + 1); });
  connect(&zoom_, &QComboBox::activated, [this](int entry) { chooseZoom(entry); });
  connect(&paper_, &QComboBox::activated, [this](int entry) { paperChosen(static_cast<Paper>(entry)); });
}

void PrintPreview::addKeys() {
  const auto key = [this](const QKeySequence& keys, std::function<void()> deed) {
    connect(&make<QShortcut>(*this, keys), &QShortcut::activated, std::move(deed));
  };
  key(QKeySequence::Print, [this] { printWanted(); });
  key(QKeySequence::Save, [this] { saveWanted(); });
  key(QKeySequence::ZoomIn, [this] { stepZoom(1); });
  key(QKeySequence("Ctrl+="), [this] { stepZoom(1); });
  key(QKeySequence::ZoomOut, [this] { stepZoom(-1); });
}

void PrintPreview::forget() {
  printWanted = saveWanted = [] {};
  paperChosen = [](Paper) {};
}

void PrintPreview::setPages(std::vector<PrintedPage> pages) {
  pages_ = std::move(pages);
  turnTo(page_);
  fit();
}

void PrintPreview::setPaper(Paper paper) {
  paper_.setCurrentIndex(static_cast<int>(paper));
}

void PrintPreview::turnTo(int page) {
  const int last = static_cast<int>(pages_.size()) - 1;
  page_ = std::max(std::min(page, last), 0);
  // A button that goes off must not take the keyboard with it.
  if ((previous_.hasFocus() && page_ == 0) || (next_.hasFocus() && page_ == last)) view_.setFocus();
  previous_.setEnabled(page_ > 0);
  next_.setEnabled(page_ < last);
  if (last >= 0) showPage();
}

void PrintPreview::showPage() {
  const QString name = QString("Page %1 of %2").arg(page_ + 1).arg(pages_.size());
  number_.setText(name);
  view_.setPage(pages_[static_cast<std::size_t>(page_)], name);
  scroll_.verticalScrollBar()->setValue(0);
}

void PrintPreview::setZoom(double percent) {
  const auto* const found = std::find(std::begin(Percents), std::end(Percents), static_cast<int>(percent));
  zoom_.setCurrentIndex(found == std::end(Percents) ? -1 : static_cast<int>(found - std::begin(Percents)));
  view_.setScale(percent / 100);
}

void PrintPreview::chooseZoom(int entry) {
  if (entry < PageWidthEntry) return setZoom(Percents[entry]);
  zoom_.setCurrentIndex(entry);
  fit();
}

/// From the percentage that is shown to the next larger or smaller one.
void PrintPreview::stepZoom(int steps) {
  const double now = view_.scale() * 100;
  if (steps > 0) {
    const auto* const larger = std::upper_bound(std::begin(Percents), std::end(Percents), now + 0.5);
    if (larger != std::end(Percents)) setZoom(*larger);
  } else {
    const auto* const smaller = std::lower_bound(std::begin(Percents), std::end(Percents), now - 0.5);
    if (smaller != std::begin(Percents)) setZoom(*std::prev(smaller));
  }
}

void PrintPreview::fit() {
  if (pages_.empty() || zoom_.currentIndex() < PageWidthEntry) return;
  const bool wholly = zoom_.currentIndex() == WholePageEntry;
  // A page as wide as its window is longer than that, and scrolls.
  const int bar = wholly ? 0 : scroll_.verticalScrollBar()->sizeHint().width();
  view_.setScale(view_.scaleFor(scroll_.size() - QSize(bar, 0), wholly));
}

void PrintPreview::resizeEvent(QResizeEvent* /*event*/) {
  fit();
}

void PrintPreview::say(const std::string& words) {
  const bool inSight = words_.isVisible();
  words_.setText(shown(words));
  words_.setVisible(!words.empty());
  if (inSight) tellNotice(words_);
}

bool PrintPreview::eventFilter(QObject* /*watched*/, QEvent* event) {
  return event->type() == QEvent::KeyPress && handleKey(static_cast<QKeyEvent*>(event)->key());
}

bool PrintPreview::handleKey(int key) {
  QScrollBar& down = *scroll_.verticalScrollBar();
  QScrollBar& across = *scroll_.horizontalScrollBar();
  switch (key) {
    case Qt::Key_PageDown:
    case Qt::Key_Space:
      return scrollOrTurn(1), true;
    case Qt::Key_PageUp:
      return scrollOrTurn(-1), true;
    case Qt::Key_Home:
      return turnTo(0), true;
    case Qt::Key_End:
      return turnTo(static_cast<int>(pages_.size()) - 1), true;
    case Qt::Key_Down:
      return down.triggerAction(QScrollBar::SliderSingleStepAdd), true;
    case Qt::Key_Up:
      return down.triggerAction(QScrollBar::SliderSingleStepSub), true;
    case Qt::Key_Right:
      return across.triggerAction(QScrollBar::SliderSingleStepAdd), true;
    case Qt::Key_Left:
      return across.triggerAction(QScrollBar::SliderSingleStepSub), true;
    default:
      return false;
  }
}

/// Through what the window does not show of the page, and then to the next or the last one.
void PrintPreview::scrollOrTurn(int direction) {
  QScrollBar& bar = *scroll_.verticalScrollBar();
  if (bar.value() != (direction > 0 ? bar.maximum() : 0))
    return bar.triggerAction(direction > 0 ? QScrollBar::SliderPageStepAdd : QScrollBar::SliderPageStepSub);
  const int before = page_;
  turnTo(page_ + direction);
  if (direction < 0 && page_ != before) bar.setValue(bar.maximum());
}

}  // namespace trackloom
