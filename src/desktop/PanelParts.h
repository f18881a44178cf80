#pragma once

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include "desktop/SelectableText.h"
#include "desktop/ShelfList.h"

namespace trackloom {

/// What the front panel is made of, laid out in its window, in the order in which it is read.
struct PanelParts {
  explicit PanelParts(QWidget& window);

  QComboBox& recorder;
  QLabel& trayDisc;
  QLabel& trayState;
  QLabel& trayRoom;
  QProgressBar& trayUse;
  QPushButton& eject;
  /// Why the tray stays shut.
  QLabel& shut;
  ShelfList& shelf;
  QPushButton& insert;
  QPushButton& rename;
  QPushButton& remove;
  QPushButton& addBlank;
  QFrame& question;
  QLabel& questionText;
  QPushButton& removeForGood;
  QPushButton& keep;
  SelectableText& message;
  SelectableText& lastWord;
  QPushButton& showFiles;
  QPushButton& close;
};

}  // namespace trackloom
