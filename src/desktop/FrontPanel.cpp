#include "desktop/FrontPanel.h"

#include <QDateTime>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <chrono>
#include <utility>

#include "desktop/Make.h"
#include "desktop/NoticeReading.h"
#include "desktop/PanelParts.h"
#include "desktop/PanelWords.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr std::chrono::seconds LookAgain{1};
constexpr const char* Shut = "An operation is running: the tray stays shut until it ends.";

void showText(SelectableText& place, const std::string& words) {
  if (place.toPlainText() != shown(words)) place.setPlainText(shown(words));
  place.setVisible(!words.empty());
}

/// A name of any length in a line of text.
QString inWords(const QWidget& widget, const std::string& name) {
  constexpr int Characters = 40;
  const QFontMetrics metrics = widget.fontMetrics();
  return "\"" + metrics.elidedText(shown(name), Qt::ElideMiddle, Characters * metrics.averageCharWidth()) + "\"";
}

bool lies(const std::string& name, const std::vector<ShelfDisc>& discs) {
  return std::any_of(discs.begin(), discs.end(), [&](const ShelfDisc& disc) { return disc.name == name; });
}

QString wholeState(const ShelfDisc& disc) {
  QStringList words{mediumText(disc), stateText(disc), shown(disc.trouble)};
  words.removeAll(QString());
  return words.join(": ");
}

/// Nothing: it was done.
std::optional<std::string> refusalOf(const std::function<void(DiscShelf&)>& deed, DiscShelf& shelf) {
  try {
    deed(shelf);
    return std::nullopt;
  } catch (const std::exception& refusal) {
    return refusal.what();
  }
}

}  // namespace

FrontPanel::FrontPanel(Shelves shelves, ShellOpener& opener, std::function<std::string()> lastWord)
    : shelves_(std::move(shelves)),
      opener_(opener),
      lastWord_(std::move(lastWord)),
      parts_(std::make_unique<PanelParts>(*this)) {
  setObjectName("FrontPanel");
  for (const auto& shelf : shelves_) parts_->recorder.addItem(shown(shelf->name()));
  parts_->recorder.setVisible(shelves_.size() > 1);
  connectParts();
  chooseRecorder(0);
  parts_->shelf.setFocus();
}

FrontPanel::~FrontPanel() {
  // The list goes after what its events need, and the box of a name hands over what was typed as it goes.
  parts_->shelf.renameWanted = [](const std::string& /*disc*/, const QString& /*name*/) {};
  parts_->shelf.blockSignals(true);
}

void FrontPanel::connectParts() {
  connect(&clock_, &QTimer::timeout, [this] { look(); });
  connect(&parts_->recorder, &QComboBox::activated, [this](int number) { chooseRecorder(number); });
  connect(&parts_->eject, &QPushButton::clicked, [this] { perform([](DiscShelf& shelf) { shelf.eject(); }); });
  connect(&parts_->insert, &QPushButton::clicked, [this] { insertChosen(); });
  connect(&parts_->rename, &QPushButton::clicked, [this] { parts_->shelf.editName(); });
  connect(&parts_->remove, &QPushButton::clicked, [this] { askToDelete(); });
  connect(&parts_->removeForGood, &QPushButton::clicked, [this] { deleteAsked(); });
  connect(&parts_->keep, &QPushButton::clicked, [this] { endQuestion(); });
  connect(&parts_->showFiles, &QPushButton::clicked, [this] {
    opener_.open({"open", recorder()->folder().text, "", "", 1});
  });
  connect(&parts_->close, &QPushButton::clicked, [this] { close(); });
  connect(&parts_->shelf, &QTreeWidget::itemSelectionChanged, [this] { showButtons(); });
  parts_->shelf.insertWanted = [this] { insertChosen(); };
  parts_->shelf.deleteWanted = [this] { askToDelete(); };
  parts_->shelf.renameWanted = [this](const std::string& disc, const QString& typed) { rename(disc, typed); };
  fillBlankMenu(make<QMenu>(*this));
}

void FrontPanel::fillBlankMenu(QMenu& menu) {
  struct Kind {
    const char* caption;
    BlankDisc disc;
  };
  for (const Kind& kind : {Kind{"CD-R, &74 min", BlankDisc::CdR74}, Kind{"CD-R, &80 min", BlankDisc::CdR80},
                           Kind{"CD-R&W, 80 min", BlankDisc::CdRw80}})
    connect(menu.addAction(kind.caption), &QAction::triggered,
            [this, disc = kind.disc] { perform([disc](DiscShelf& shelf) { shelf.addBlank(disc); }); });
  parts_->addBlank.setMenu(&menu);
}

void FrontPanel::chooseRecorder(int number) {
  chosen_ = static_cast<std::size_t>(number);
  setWindowTitle(shown(recorder()->name()));
  view_ = {};
  endQuestion();
  say("");
  parts_->shelf.clear();
  parts_->trayDisc.setText("Looking at the recorder...");
  for (QLabel* label : {&parts_->trayState, &parts_->trayRoom}) label->clear();
  parts_->trayUse.reset();
  atWork_ = false;
  showButtons();
  lookAnew();
}

void FrontPanel::lookAnew() {
  ++turn_;
  looking_ = false;
  if (isVisible()) look();
}

void FrontPanel::look() {
  if (looking_) return;
  looking_ = answers_.ask([shelf = shelves_[chosen_]] { return shelf->look(); },
                          [this, turn = turn_](const ShelfView& view) {
                            if (turn == turn_) heard(view);
                          });
}

void FrontPanel::heard(const ShelfView& view) {
  looking_ = false;
  const auto newcomer = std::find_if(view.shelf.begin(), view.shelf.end(),
                                     [this](const ShelfDisc& disc) { return !lies(disc.name, view_.shelf); });
  view_ = view;
  showTray();
  parts_->shelf.show(view.shelf, QDateTime::currentSecsSinceEpoch());
  if (std::exchange(chooseNew_, false) && newcomer != view.shelf.end()) parts_->shelf.choose(newcomer->name);
  showText(parts_->lastWord, lastWord_().empty() ? "" : "Last failure: " + lastWord_());
  showButtons();
}

void FrontPanel::showTray() {
  const bool one = view_.tray.size() == 1;
  const ShelfDisc disc = one ? view_.tray.front() : ShelfDisc();
  const QString empty = view_.present ? "No disc" : "The recorder's folder is not there";
  parts_->trayDisc.setText(one ? shown(disc.name) : view_.tray.empty() ? empty : "Several discs, which jam the tray");
  parts_->trayState.setText(one ? wholeState(disc) : QString());
  parts_->trayRoom.setText(roomText(disc));
  parts_->trayUse.setRange(0, std::max(disc.size, 1));
  parts_->trayUse.setValue(disc.used);
}

void FrontPanel::showButtons() {
  const bool ready = view_.present && !atWork_;
  const bool chosen = ready && parts_->shelf.chosen().has_value();
  parts_->eject.setEnabled(ready && !view_.busy);
  parts_->insert.setEnabled(chosen && !view_.busy);
  parts_->rename.setEnabled(chosen);
  parts_->remove.setEnabled(chosen);
  parts_->addBlank.setEnabled(ready);
  parts_->showFiles.setEnabled(view_.present);
  parts_->shut.setText(view_.busy ? Shut : "");
  parts_->shut.setVisible(view_.busy);
  for (QPushButton* button : {&parts_->eject, &parts_->insert}) {
    button->setToolTip(view_.busy ? Shut : "");
    button->setAccessibleDescription(view_.busy ? Shut : "");
  }
}

void FrontPanel::say(const std::string& words) {
  const bool inSight = parts_->message.isVisible();
  showText(parts_->message, words);
  if (inSight) tellNotice(parts_->message);
}

void FrontPanel::perform(Deed deed, std::function<void(bool done)> after) {
  if (atWork_) return;
  say("");
  ++turn_;
  const auto hear = [this, turn = turn_, after = std::move(after)](const std::optional<std::string>& refusal) {
    if (turn == turn_) ended(refusal, after);
  };
  atWork_ = answers_.ask([shelf = shelves_[chosen_], deed = std::move(deed)] { return refusalOf(deed, *shelf); }, hear);
  if (!atWork_) ended("The system has no thread to spare.", [](bool) {});
  showButtons();
}

void FrontPanel::ended(const std::optional<std::string>& refusal, const std::function<void(bool done)>& after) {
  atWork_ = false;
  chooseNew_ = !refusal;
  say(refusal.value_or(""));
  lookAnew();
  after(!refusal);
}

void FrontPanel::insertChosen() {
  const auto disc = parts_->shelf.chosen();
  if (disc && parts_->insert.isEnabled()) perform([disc](DiscShelf& shelf) { shelf.insert(*disc); });
}

void FrontPanel::askToDelete() {
  asked_ = parts_->shelf.chosen();
  if (!asked_ || !parts_->remove.isEnabled()) return;
  say("");
  parts_->questionText.setText("Delete the disc " + inWords(*this, *asked_) + " with all that is recorded on it?");
  parts_->question.setAccessibleName(parts_->questionText.text());
  parts_->keep.setAccessibleDescription(parts_->questionText.text());
  parts_->question.show();
  parts_->keep.setFocus(Qt::TabFocusReason);
}

void FrontPanel::endQuestion() {
  asked_.reset();
  const bool hadFocus = parts_->question.isAncestorOf(focusWidget());
  parts_->question.hide();
  if (hadFocus) parts_->shelf.setFocus();
}

void FrontPanel::deleteAsked() {
  if (asked_) perform([disc = *asked_](DiscShelf& shelf) { shelf.remove(disc); });
  endQuestion();
}

void FrontPanel::rename(const std::string& disc, const QString& typed) {
  perform([disc, name = entered(typed.trimmed())](DiscShelf& shelf) { shelf.rename(disc, name); },
          [this, disc, typed](bool done) {
            if (!done && parts_->shelf.chosen() == disc) parts_->shelf.editName(typed);
          });
}

void FrontPanel::showEvent(QShowEvent* /*event*/) {
  look();
  clock_.start(LookAgain);
}

void FrontPanel::hideEvent(QHideEvent* /*event*/) {
  clock_.stop();
  endQuestion();
  say("");
}

void FrontPanel::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QWidget::keyPressEvent(event);
  if (asked_)
    endQuestion();
  else
    close();
}

}  // namespace trackloom
