#include <QDialog>
#include <QMainWindow>
#include <QToolBar>
#include <QVBoxLayout>
#include <catch2/catch.hpp>

#include "desktop/DriveNotice.h"
#include "desktop/HelpWindow.h"
#include "desktop/LiveProgram.h"
#include "desktop/Make.h"
#include "desktop/PanelDoor.h"
#include "desktop/PanelTrial.h"
#include "desktop/PrintPreview.h"
#include "desktop/QtFileDialogs.h"
#include "desktop/QtMessageBoxes.h"
#include "desktop/Trial.h"
#include "desktop/WholeState.h"

namespace trackloom {

namespace {

/// Compares line by line; the first line of `due` is empty.
void checkState(const trial::Lines& is, const char* due) {
  const QStringList lines = QString(due).mid(1).split('\n');
  for (std::size_t line = 0; line < is.size() && line < static_cast<std::size_t>(lines.size()); ++line)
    CHECK(is[line] == lines[static_cast<qsizetype>(line)].toStdString());
  CHECK(is.size() == static_cast<std::size_t>(lines.size()));
}

void checkState(QWidget& widget, const char* due) {
  checkState(trial::wholeState(widget), due);
}

}  // namespace

TEST_CASE("The front panel has these parts in this order, and all that is set on them") {
  trial::Panel panel(2);
  checkState(*panel.window, R"(
QWidget FrontPanel windowTitle=Virtual Recorder
  QVBoxLayout margins 16,16,16,16 spacing 10
    QComboBox recorder accessibleName=Recorder currentIndex=0 [Virtual Recorder] [Virtual Recorder 2]
    QGroupBox  title=Tray
      QGridLayout margins 9,9,9,9 spacing 10,5 stretch 1 0
        QLabel trayDisc at 0,0 text=Looking at the recorder... textFormat=PlainText wordWrap=true bold
        QLabel trayState at 1,0 textFormat=PlainText wordWrap=true
        QLabel trayRoom at 2,0 textFormat=PlainText wordWrap=true
        QProgressBar trayUse at 3,0 accessibleName=Disc space used textVisible=false
        QPushButton eject at 3,1 enabled=false text=&Eject shortcut=Alt+E
        QLabel shut at 4,0 over 1x2 textFormat=PlainText wordWrap=true
    QLabel  text=&Shelf: for shelf
    QTreeWidget shelf stretch 1 minimumSize=520x120 accessibleName=Discs on the shelf editTriggers=NoEditTriggers rootIsDecorated=false uniformRowHeights=true allColumnsShowFocus=true columnCount=5 head [Name] stretched [Medium] as its contents [Size] as its contents [Age] as its contents [State] as its contents movable
    QHBoxLayout margins 0,0,0,0 spacing 10
      QPushButton insert enabled=false text=&Insert shortcut=Alt+I
      QPushButton rename enabled=false text=&Rename shortcut=Alt+R
      QPushButton remove enabled=false text=&Delete shortcut=Alt+D
      QPushButton addBlank enabled=false text=&Add Blank shortcut=Alt+A
      room
    QFrame question frameShape=StyledPanel
      QVBoxLayout margins 9,9,9,9 spacing 6
        QLabel questionText textFormat=PlainText wordWrap=true +told=true
        QHBoxLayout margins 0,0,0,0 spacing 10
          QPushButton removeForGood text=Delete for &Good shortcut=Alt+G
          QPushButton keep text=&Keep shortcut=Alt+K
          room
    QTextEdit message sizePolicy=5,1 accessibleName=Message of the recorder frameShape=NoFrame verticalScrollBarPolicy=ScrollBarAlwaysOff horizontalScrollBarPolicy=ScrollBarAlwaysOff tabChangesFocus=true readOnly=true textInteractionFlags=TextSelectableByMouse|TextSelectableByKeyboard bold margin 0 wraps 4 without ground as high as its width asks for +told=true
    QTextEdit lastWord sizePolicy=5,1 accessibleName=Last failure frameShape=NoFrame verticalScrollBarPolicy=ScrollBarAlwaysOff horizontalScrollBarPolicy=ScrollBarAlwaysOff tabChangesFocus=true readOnly=true textInteractionFlags=TextSelectableByMouse|TextSelectableByKeyboard margin 0 wraps 4 without ground as high as its width asks for
    QHBoxLayout margins 0,0,0,0 spacing 10
      QPushButton showFiles enabled=false text=Show &Files shortcut=Alt+F
      room
      QPushButton close text=&Close shortcut=Alt+C)");
}

TEST_CASE("The window of the help has these parts in this order, and all that is set on them") {
  fakes::FakeOpener opener;
  HelpWindow window(opener);
  CHECK_FALSE(window.testAttribute(Qt::WA_QuitOnClose));
  checkState(window, R"(
QWidget HelpWindow
  QVBoxLayout margins 0,0,0,0 spacing 0
    QToolBar  iconSize=20x20 toolButtonStyle=ToolButtonTextBesideIcon floating=false
      action back "Back" Alt+Left (Back (Alt+Left)) with a picture off
      action forward "Forward" Alt+Right (Forward (Alt+Right)) with a picture off
      action home "Home" Alt+Home (Home (Alt+Home)) with a picture
      separator
      action larger "Larger" Ctrl++ (Larger (Ctrl++)) with a picture
      action smaller "Smaller" Ctrl+- (Smaller (Ctrl+-)) with a picture
    QSplitter  stretch 1
      QTabWidget  stretch 0 currentIndex=0 [&Contents] [I&ndex] [&Search]
        QTreeWidget contents accessibleName=Contents headerHidden=true head [1] to the edge movable
        QWidget 
          QVBoxLayout margins 9,9,9,9 spacing 6
            QLineEdit index accessibleName=Words to look for in the index maxLength=100 placeholderText=Words to look for in the index clearButtonEnabled=true
            QListWidget indexLines accessibleName=Index
        QWidget 
          QVBoxLayout margins 9,9,9,9 spacing 6
            QLineEdit search accessibleName=Words to search for in all pages maxLength=100 placeholderText=Words to search for in all pages clearButtonEnabled=true
            QListWidget searchLines accessibleName=Pages found
            QLabel found
      QTextBrowser page stretch 1 accessibleName=Page frameShape=NoFrame openLinks=false margin 16 wraps 4)");
}

TEST_CASE("The preview has these parts in this order, and all that is set on them") {
  QDialog dialog;
  PrintPreview& preview = *std::make_unique<PrintPreview>().release();
  make<QVBoxLayout>(dialog).addWidget(&preview);
  checkState(preview, R"(
QWidget 
  QVBoxLayout margins 0,0,0,0 spacing 0
    QWidget 
      QHBoxLayout margins 8,8,8,8 spacing 8
        QPushButton  text=&Print... icon=a picture shortcut=Alt+P
        QPushButton  text=&Save as PDF... icon=a picture shortcut=Alt+S
        QPushButton  text=Pre&vious shortcut=Alt+V
        QLabel 
        QPushButton  text=&Next shortcut=Alt+N
        room
        QLabel  text=&Zoom: for [25 %] [50 %] [75 %] [100 %] [125 %] [150 %] [200 %] [400 %] [Page width] [Whole page]
        QComboBox  focusPolicy=StrongFocus currentIndex=0 [25 %] [50 %] [75 %] [100 %] [125 %] [150 %] [200 %] [400 %] [Page width] [Whole page]
        QLabel  text=Pap&er: for [Letter] [A4]
        QComboBox  focusPolicy=StrongFocus currentIndex=0 [Letter] [A4]
    QScrollArea  stretch 1 focusPolicy=NoFocus frameShape=NoFrame alignment=AlignHCenter|AlignTop mid
    QLabel  textFormat=PlainText wordWrap=true margin=8 +told=true)");
}

TEST_CASE("The bars of the main window have these parts in this order, and all that is set on them") {
  trial::LiveProgram live;
  live.startQuietly();
  CHECK(live.window().contextMenuPolicy() == Qt::PreventContextMenu);
  CHECK(live.window().iconSize() == QSize(22, 22));
  const auto bar = [&](const char* name) { return trial::wholeState(trial::in<QToolBar>(live.window(), name)); };
  const trial::Lines tools = bar("Tool Bar 1");
  REQUIRE(tools.size() == 11);
  checkState({tools[0], tools[1], tools[4]}, R"(
QToolBar Tool Bar 1 windowTitle=Tool Bar 1 accessibleName=Tool Bar 1 allowedAreas=TopToolBarArea|BottomToolBarArea iconSize=22x22 toolButtonStyle=ToolButtonTextUnderIcon floating=false floatable=false
  QToolButton  focusPolicy=NoFocus toolTip=New text=New icon=a picture iconSize=22x22 popupMode=InstantPopup toolButtonStyle=ToolButtonTextUnderIcon autoRaise=true
  QToolButton  enabled=false focusPolicy=NoFocus toolTip=Search text=Search icon=a picture iconSize=22x22 popupMode=InstantPopup toolButtonStyle=ToolButtonTextUnderIcon autoRaise=true)");
  checkState(bar("StatusBar1"), R"(
QToolBar StatusBar1 windowTitle=StatusBar1 accessibleName=StatusBar1 allowedAreas=TopToolBarArea|BottomToolBarArea iconSize=22x22 floating=false floatable=false
  QWidget  sizePolicy=7,0
    QHBoxLayout margins 6,3,6,3 spacing 6
      QLabel  sizePolicy=7,0 minimumSize=1x0 toolTip=For Help, Press F1 text=For Help, Press F1 textFormat=PlainText
      QFrame  sizePolicy=0,1 frameShape=VLine mid
      QLabel  sizePolicy=7,0 minimumSize=1x0 textFormat=PlainText
      QFrame  sizePolicy=0,1 frameShape=VLine mid
      QLabel  sizePolicy=7,0 minimumSize=1x0 toolTip=ACME Writer (D:) text=ACME Writer (D:) textFormat=PlainText)");
  checkState(bar("StatusBar2"), R"(
QToolBar StatusBar2 windowTitle=StatusBar2 accessibleName=StatusBar2 allowedAreas=TopToolBarArea|BottomToolBarArea iconSize=22x22 floating=false floatable=false
  QWidget  sizePolicy=7,0
    QHBoxLayout margins 6,3,6,3 spacing 6
      QProgressBar  accessibleName=Disc space used maximum=1 value=0 alignment=AlignCenter)");
  checkState(bar("Tool Bar 2"), R"(
QToolBar Tool Bar 2 windowTitle=Tool Bar 2 accessibleName=Tool Bar 2 allowedAreas=TopToolBarArea|BottomToolBarArea iconSize=22x22 toolButtonStyle=ToolButtonTextUnderIcon floating=false floatable=false
  QWidget 
    QHBoxLayout margins 6,3,6,3 spacing 6
      QWidget  minimumSize=22x22 maximumSize=22x22
      QLabel  text=Drive
      QComboBox cboMainDrive focusPolicy=StrongFocus accessibleName=Drive currentIndex=0 sizeAdjustPolicy=AdjustToMinimumContentsLengthWithIcon minimumContentsLength=38 [ACME Writer (D:)])");
}

TEST_CASE("The notice of drives and the door of the panel stand in the status bar as they are set") {
  QMainWindow window;
  QToolBar bar;
  bar.setObjectName("StatusBar1");
  window.addToolBar(&bar);
  DriveNotice notice;
  notice.standIn(window);
  fakes::FakeOpener opener;
  PanelDoor door({std::make_shared<trial::FakeShelf>()}, opener, [] { return std::string(); });
  door.standIn(window);
  checkState(bar, R"(
QToolBar StatusBar1 floating=false
  QToolButton driveNotice hidden enabled=false text=A drive cannot be used icon=a picture toolButtonStyle=ToolButtonTextBesideIcon autoRaise=true
  QToolButton frontPanel hidden enabled=false toolTip=Front panel of the virtual recorder accessibleName=Front Panel icon=a picture autoRaise=true)");
}

TEST_CASE("A control of each kind is set as its form needs it") {
  trial::Shown trial;
  checkState(*trial.desk.window(*trial.form), R"(
QDialog  windowTitle=A trial
  QVBoxLayout margins 11,11,11,11 spacing 6
    QLineEdit txtName
    QPushButton cmdOK text=&OK shortcut=Alt+O
    QPushButton cmdCancel text=&Cancel shortcut=Alt+C
    QCheckBox chkTick text=Tick && tack
    QRadioButton optFirst text=First
    QRadioButton optSecond text=Second
    QComboBox cboPick focusPolicy=StrongFocus iconSize=14x14
    QLabel lblText text=One & two three textFormat=PlainText
    QGroupBox Frame1 title=A frame
    QWidget Image1
    QProgressBar pbDone text=0% value=0
    QTabBar TS1 currentIndex=0
    QScrollBar VScroll1 minimum=1 maximum=20 pageStep=1 value=1 sliderPosition=1
    QTreeView FT1 editTriggers=NoEditTriggers uniformRowHeights=true headerHidden=true head [1] to the edge movable
    QTreeView List1 minimumSize=400x200 editTriggers=NoEditTriggers dragDropMode=DropOnly textElideMode=ElideMiddle rootIsDecorated=false uniformRowHeights=true itemsExpandable=false allColumnsShowFocus=true head [A] [B]
    QStatusBar StatusBar1 minimumSize=0x0 sizeGripEnabled=false)");
}

TEST_CASE("Dialogs for files and boxes are set as the program asks for them") {
  trial::Shown trial;
  trial::User user;
  trial::Lines told;
  const auto tell = [&told](QWidget& box) {
    told.push_back(trial::wholeState(box).front());
    QTest::keyClick(&box, Qt::Key_Escape);
  };
  QtFileDialogs files(trial.desk);
  for (const auto mode : {FileDialog::Mode::Open, FileDialog::Mode::Save})
    for (const bool strict : {false, true}) {
      user.at(mode == FileDialog::Mode::Open ? "Open" : "Save As", tell);
      files.choose({mode, "mix.iso", "ISO Images (*.iso)|*.iso", {strict, strict, strict}});
    }
  user.at("t", tell);
  QtMessageBoxes(trial.desk).show({"t", "x & <b>", BoxButtons::OkCancel, BoxIcon::Exclamation});
  checkState(told, R"(
QFileDialog QFileDialog windowModality=WindowModal options=DontConfirmOverwrite|DontUseNativeDialog
QFileDialog QFileDialog windowModality=WindowModal fileMode=ExistingFile options=DontUseNativeDialog
QFileDialog QFileDialog windowModality=WindowModal windowTitle=Save As acceptMode=AcceptSave options=DontConfirmOverwrite|DontUseNativeDialog
QFileDialog QFileDialog windowModality=WindowModal windowTitle=Save As fileMode=ExistingFile acceptMode=AcceptSave options=DontUseNativeDialog
QMessageBox  windowModality=WindowModal windowTitle=t text=x & <b> icon=Warning textFormat=PlainText standardButtons=Cancel|FirstButton)");
}

}  // namespace trackloom
