#include "desktop/Trial.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTreeView>
#include <QVBoxLayout>

#include "desktop/Make.h"
#include "desktop/PictureView.h"

namespace trackloom::trial {

namespace {

template <class Widget>
void add(QDialog& window, const char* name) {
  auto& widget = make<Widget>(window);
  widget.setObjectName(name);
  window.layout()->addWidget(&widget);
}

std::unique_ptr<QDialog> wholeDesign() {
  auto window = std::make_unique<QDialog>();
  make<QVBoxLayout>(*window);
  add<QLineEdit>(*window, "txtName");
  add<QPushButton>(*window, "cmdOK");
  add<QPushButton>(*window, "cmdCancel");
  add<QCheckBox>(*window, "chkTick");
  add<QRadioButton>(*window, "optFirst");
  add<QRadioButton>(*window, "optSecond");
  add<QComboBox>(*window, "cboPick");
  add<QLabel>(*window, "lblText");
  add<QGroupBox>(*window, "Frame1");
  add<PictureView>(*window, "Image1");
  add<QProgressBar>(*window, "pbDone");
  add<QTabBar>(*window, "TS1");
  add<QScrollBar>(*window, "VScroll1");
  add<QTreeView>(*window, "FT1");
  add<QTreeView>(*window, "List1");
  add<QStatusBar>(*window, "StatusBar1");
  window->findChild<QTreeView*>("List1")->setMinimumSize(400, 200);
  window->findChild<QTreeView*>("List1")->header()->setStretchLastSection(false);
  return window;
}

std::unique_ptr<QWidget> designWithout(const char* name) {
  auto window = wholeDesign();
  const std::unique_ptr<QWidget> gone(window->findChild<QWidget*>(name));
  return window;
}

}  // namespace

TrialForm::TrialForm(FormHost& host) : Form(host, "frmTrial", "A trial") {
  cmdOK.Click = [this] { heard.push_back("cmdOK"); };
  cmdCancel.Click = [this] { heard.push_back("cmdCancel"); };
  chkTick.Click = [this] { heard.push_back("chkTick"); };
  optSecond.Click = [this] { heard.push_back("optSecond"); };
  cboPick.Click = [this] { heard.push_back("cboPick " + cboPick.Text()); };
  txtName.Change = [this] { heard.push_back("txtName " + txtName.Text.get()); };
  TS1.Click = [this] { heard.push_back("TS1"); };
  VScroll1.Change = [this] { heard.push_back("VScroll1"); };
  List1.ItemCheck = [this](int row) { heard.push_back("check " + std::to_string(row)); };
  List1.DblClick = [this] { heard.push_back("double " + std::to_string(List1.SelectedRow())); };
}

bool TrialForm::QueryUnload(CloseReason reason) {
  heard.push_back(reason == CloseReason::User ? "close by user" : "close by program");
  return !refuseClose;
}

const std::vector<FaceDesign>& trialDesigns() {
  static const std::vector<FaceDesign> designs{
      {"frmTrial", [] { return std::unique_ptr<QWidget>(wholeDesign()); }},
      {"frmTooFew", [] { return designWithout("chkTick"); }},
      {"frmTooMany",
       [] {
         auto window = wholeDesign();
         add<QLineEdit>(*window, "txtStray");
         return std::unique_ptr<QWidget>(std::move(window));
       }},
      {"frmTwice",
       [] {
         auto window = wholeDesign();
         add<QPushButton>(*window, "cmdOK");
         return std::unique_ptr<QWidget>(std::move(window));
       }},
      {"frmWrongClass",
       [] {
         auto window = designWithout("txtName");
         make<QLabel>(*window).setObjectName("txtName");
         return window;
       }},
  };
  return designs;
}

Shown::Shown() : desk(trialDesigns()), form(std::make_shared<TrialForm>(desk)) {
  form->show();
}

Shown::~Shown() = default;

}  // namespace trackloom::trial
