#include "desktop/PanelParts.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <memory>
#include <vector>

#include "desktop/Make.h"

namespace trackloom {

namespace {

constexpr int Margin = 16;
constexpr int Gap = 10;
constexpr QSize LeastList(520, 120);

template <class Widget>
Widget& named(QWidget& window, const char* name) {
  auto& widget = make<Widget>(window);
  widget.setObjectName(name);
  return widget;
}

QPushButton& button(QWidget& window, const char* name, const char* caption) {
  auto& push = named<QPushButton>(window, name);
  push.setText(caption);
  return push;
}

QLabel& line(QWidget& window, const char* name) {
  auto& label = named<QLabel>(window, name);
  label.setTextFormat(Qt::PlainText);
  label.setWordWrap(true);
  return label;
}

void setBold(QWidget& widget) {
  QFont font = widget.font();
  font.setBold(true);
  widget.setFont(font);
}

QLayout& rowOf(const std::vector<QWidget*>& left, const std::vector<QWidget*>& right) {
  auto row = std::make_unique<QHBoxLayout>();
  row->setSpacing(Gap);
  for (QWidget* widget : left) row->addWidget(widget);
  row->addStretch();
  for (QWidget* widget : right) row->addWidget(widget);
  return *row.release();
}

void layOutTray(QGroupBox& group, PanelParts& parts) {
  auto& grid = make<QGridLayout>(group);
  grid.setVerticalSpacing(Gap / 2);
  grid.setHorizontalSpacing(Gap);
  grid.setColumnStretch(0, 1);
  setBold(parts.trayDisc);
  int row = 0;
  for (QWidget* widget : {static_cast<QWidget*>(&parts.trayDisc), static_cast<QWidget*>(&parts.trayState),
                          static_cast<QWidget*>(&parts.trayRoom), static_cast<QWidget*>(&parts.trayUse)})
    grid.addWidget(widget, row++, 0);
  grid.addWidget(&parts.eject, row - 1, 1);
  grid.addWidget(&parts.shut, row, 0, 1, 2);
}

void layOutQuestion(PanelParts& parts) {
  auto& rows = make<QVBoxLayout>(parts.question);
  parts.question.setFrameShape(QFrame::StyledPanel);
  rows.addWidget(&parts.questionText);
  rows.addLayout(&rowOf({&parts.removeForGood, &parts.keep}, {}));
}

}  // namespace

PanelParts::PanelParts(QWidget& window)
    : recorder(named<QComboBox>(window, "recorder")),
      trayDisc(line(window, "trayDisc")),
      trayState(line(window, "trayState")),
      trayRoom(line(window, "trayRoom")),
      trayUse(named<QProgressBar>(window, "trayUse")),
      eject(button(window, "eject", "&Eject")),
      shut(line(window, "shut")),
      shelf(named<ShelfList>(window, "shelf")),
      insert(button(window, "insert", "&Insert")),
      rename(button(window, "rename", "&Rename")),
      remove(button(window, "remove", "&Delete")),
      addBlank(button(window, "addBlank", "&Add Blank")),
      question(named<QFrame>(window, "question")),
      questionText(line(window, "questionText")),
      removeForGood(button(window, "removeForGood", "Delete for &Good")),
      keep(button(window, "keep", "&Keep")),
      message(named<SelectableText>(window, "message")),
      lastWord(named<SelectableText>(window, "lastWord")),
      showFiles(button(window, "showFiles", "Show &Files")),
      close(button(window, "close", "&Close")) {
  message.setProperty("told", true);
  questionText.setProperty("told", true);
  auto& tray = make<QGroupBox>(window, "Tray");
  layOutTray(tray, *this);
  layOutQuestion(*this);
  auto& shelfLabel = make<QLabel>(window, "&Shelf:");
  shelfLabel.setBuddy(&shelf);
  shelf.setMinimumSize(LeastList);
  auto& rows = make<QVBoxLayout>(window);
  rows.setContentsMargins(Margin, Margin, Margin, Margin);
  rows.setSpacing(Gap);
  rows.addWidget(&recorder);
  rows.addWidget(&tray);
  rows.addWidget(&shelfLabel);
  rows.addWidget(&shelf, 1);
  rows.addLayout(&rowOf({&insert, &rename, &remove, &addBlank}, {}));
  for (QWidget* widget :
       {static_cast<QWidget*>(&question), static_cast<QWidget*>(&message), static_cast<QWidget*>(&lastWord)})
    rows.addWidget(widget);
  rows.addLayout(&rowOf({&showFiles}, {&close}));
  recorder.setAccessibleName("Recorder");
  trayUse.setAccessibleName("Disc space used");
  trayUse.setTextVisible(false);
  setBold(message);
  message.setAccessibleName("Message of the recorder");
  lastWord.setAccessibleName("Last failure");
}

}  // namespace trackloom
