#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <algorithm>
#include <catch2/catch.hpp>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <sstream>

#include "desktop/AllForms.h"
#include "desktop/Binder.h"
#include "desktop/ForcedEnd.h"
#include "desktop/Host.h"
#include "desktop/LiveProgram.h"
#include "desktop/Make.h"
#include "desktop/PictureView.h"
#include "desktop/ScreenFit.h"
#include "desktop/Trial.h"
#include "runtime/Files.h"

namespace trackloom {

using trial::comesTrue;
using trial::in;
using Lines = std::vector<std::string>;

namespace {

/// An environment variable with another value, or with none, for as long as this lives.
class Variable {
 public:
  Variable(const char* name, const char* value)
      : name_(name), before_(qgetenv(name)), was_(qEnvironmentVariableIsSet(name)) {
    value == nullptr ? qunsetenv(name) : qputenv(name, value);
  }
  ~Variable() { was_ ? qputenv(name_, before_) : qunsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  const QByteArray before_;
  const bool was_;
};

Lines texts(const std::vector<HostPath>& paths) {
  Lines texts;
  for (const HostPath& path : paths) texts.push_back(path.text);
  return texts;
}

void count(int& paints, QWidget& widget) {
  struct Counter final : QObject {
    explicit Counter(int& paints, QObject* parent) : QObject(parent), paints_(paints) {}
    bool eventFilter(QObject* /*of*/, QEvent* event) override {
      if (event->type() == QEvent::Paint) ++paints_;
      return false;
    }
    int& paints_;
  };
  widget.installEventFilter(std::make_unique<Counter>(paints, &widget).release());
}

void named(QWidget& widget, const char* name) {
  widget.setObjectName(name);
}

/// The problems of the trial form with what `Add` puts into its window beyond its design.
template <class Add>
Lines problemsWith(Add /*add*/) {
  QtDesk desk;
  const auto form = std::make_shared<trial::TrialForm>(desk);
  return bindingProblems(*form, {{"frmTrial", [] {
                                    auto window = trial::trialDesigns().front().make();
                                    Add()(*window);
                                    return window;
                                  }}});
}

}  // namespace

// A window of a kind that is no dialog's is not told to the window system as belonging to another one, so it has an
// entry of its own on the desktop.
TEST_CASE(
    "The splash has no frame, dialogs have a title and a close box alone, the recording's window minimises beside the "
    "others, and main windows have everything") {
  const trial::AllForms forms;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    const Qt::WindowFlags flags = shown.window.windowFlags();
    if (form->name() == "frmOpen")
      CHECK(flags == (Qt::SplashScreen | Qt::FramelessWindowHint));
    else if (form->name() == "frmListing" || form->name() == "frmRipMain" || form->name() == "frmPrint")
      CHECK((flags & Qt::WindowMinMaxButtonsHint) == Qt::WindowMinMaxButtonsHint);
    else if (form->name() == "frmStatus")
      CHECK(flags == (Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                      Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint));
    else
      CHECK(flags == (Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                      Qt::WindowCloseButtonHint |
                      (form->name() == "frmReading" ? Qt::WindowStaysOnTopHint : Qt::WindowFlags())));
    CHECK(shown.window.windowModality() == Qt::NonModal);
    CHECK(shown.window.windowTitle().toStdString() == form->caption.get());
  }
}

TEST_CASE("Headings are bold and a third larger than the form's text, subheadings bold alone, and nothing else is") {
  const trial::AllForms forms;
  int headings = 0;
  for (const auto& form : forms.all) {
    INFO(form->name());
    const trial::ShownForm shown(*form);
    const double usual = QApplication::font().pointSizeF();
    for (const QLabel* label : shown.window.findChildren<QLabel*>()) {
      INFO(label->objectName().toStdString());
      const bool heading = label->property("heading").toBool();
      const bool bold = heading || label->property("subheading").toBool();
      CHECK(label->font().bold() == bold);
      CHECK(label->font().pointSizeF() == Approx(heading ? 1.35 * usual : usual));
      headings += heading ? 1 : 0;
    }
  }
  CHECK(headings > 5);
}

TEST_CASE("A dialog opens no wider than it was designed, and as high as what it holds") {
  const trial::AllForms forms;
  for (const auto& form : forms.all) {
    const trial::ShownForm shown(*form);
    if (!shown.window.inherits("QDialog") || form->name() == "frmOpen") continue;
    INFO(form->name());
    const QLayout& layout = *shown.window.layout();
    CHECK(shown.window.width() >= layout.totalMinimumSize().width());
    CHECK(shown.window.minimumWidth() >= layout.totalMinimumSize().width());
    if (layout.hasHeightForWidth())
      CHECK(shown.window.minimumHeight() >= layout.minimumHeightForWidth(shown.window.width()));
  }
}

TEST_CASE("A window has its title before it is shown") {
  struct Filter final : QObject {
    bool eventFilter(QObject* of, QEvent* event) override {
      const auto* window = qobject_cast<QWidget*>(of);
      if (event->type() == QEvent::Show && window != nullptr && window->isWindow() && title.isNull())
        title = window->windowTitle();
      return false;
    }
    QString title;
  } atShow;
  qApp->installEventFilter(&atShow);
  const trial::Shown shown;
  CHECK(atShow.title == "A trial");
}

TEST_CASE("A form's caption changes its window's title, as often as it changes") {
  trial::Shown shown;
  QWidget& window = *shown.desk.window(*shown.form);
  CHECK(window.windowTitle() == "A trial");
  for (const char* caption : {"Another", "A third & last"}) {
    shown.form->caption = caption;
    CHECK(window.windowTitle() == caption);
  }
}

TEST_CASE("A window is owned by the one that it stands before, from its first showing, and else by the program") {
  QtDesk desk(trial::trialDesigns());
  const auto first = std::make_shared<trial::TrialForm>(desk);
  const auto second = std::make_shared<trial::TrialForm>(desk);
  first->show();
  CHECK(desk.family().owns(desk.window(*first)));
  QTimer::singleShot(0, qApp, [&] {
    QWidget& window = *desk.window(*second);
    CHECK(window.windowHandle()->transientParent() == desk.window(*first)->windowHandle());
    CHECK(window.windowModality() == Qt::WindowModal);
    CHECK(comesTrue([&] { return window.isActiveWindow(); }));
    second->hide();
  });
  second->showModal(first.get());
  second->show();
  CHECK(desk.window(*second)->windowModality() == Qt::NonModal);
}

TEST_CASE("A window opens over the middle of its owner, and without one in the middle of the screen") {
  QtDesk desk(trial::trialDesigns());
  const auto first = std::make_shared<trial::TrialForm>(desk);
  const auto second = std::make_shared<trial::TrialForm>(desk);
  first->show();
  const QRect screen = QApplication::primaryScreen()->availableGeometry();
  QWidget& owner = *desk.window(*first);
  const auto middle = [](const QWidget& window) {
    return QRect(window.pos(), window.size() + frameOf(window)).center();
  };
  CHECK((middle(owner) - screen.center()).manhattanLength() <= 3);
  owner.move(owner.pos() + QPoint(60, 0));
  QTimer::singleShot(0, qApp, [&] {
    CHECK(std::abs(middle(*desk.window(*second)).x() - owner.frameGeometry().center().x()) <= 2);
    second->hide();
  });
  second->showModal(first.get());
}

TEST_CASE("A box opens over the middle of the window that it stands before, wherever that is") {
  trial::Shown shown;
  QWidget& owner = *shown.desk.window(*shown.form);
  QtMessageBoxes boxes(shown.desk);
  for (const QPoint& place : {QPoint(10, 10), QPoint(350, 200)}) {
    owner.move(place);
    owner.resize(400, 560);
    owner.activateWindow();
    REQUIRE(QTest::qWaitForWindowActive(&owner));
    QPoint middle;
    QTimer::singleShot(0, qApp, [&] {
      QWidget& box = *QApplication::activeModalWidget();
      middle = QRect(box.pos(), box.size() + frameOf(box)).center();
      box.close();
    });
    boxes.show({"t", "x", BoxButtons::Ok, BoxIcon::Information});
    CHECK((middle - owner.frameGeometry().center()).manhattanLength() <= 3);
  }
}

TEST_CASE("Each icon and each set of buttons of a box is the toolkit's of that name, the first button its default") {
  using B = QMessageBox;
  trial::Shown shown;
  QtMessageBoxes boxes(shown.desk);
  struct Due {
    BoxIcon icon;
    B::Icon drawn;
    BoxButtons buttons;
    B::StandardButtons shown;
    B::StandardButton first;
  };
  for (const Due& due : std::initializer_list<Due>{
           {BoxIcon::Information, B::Information, BoxButtons::Ok, B::Ok, B::Ok},
           {BoxIcon::Question, B::Question, BoxButtons::OkCancel, B::Ok | B::Cancel, B::Ok},
           {BoxIcon::Critical, B::Critical, BoxButtons::YesNo, B::Yes | B::No, B::Yes},
           {BoxIcon::Exclamation, B::Warning, BoxButtons::YesNoCancel, B::Yes | B::No | B::Cancel, B::Yes},
           {BoxIcon::Exclamation, B::Warning, BoxButtons::RetryCancel, B::Retry | B::Cancel, B::Retry}}) {
    QTimer::singleShot(0, qApp, [&] {
      auto& box = dynamic_cast<B&>(*QApplication::activeModalWidget());
      CHECK(box.icon() == due.drawn);
      CHECK(box.standardButtons() == due.shown);
      CHECK(box.standardButton(box.defaultButton()) == due.first);
      CHECK(box.windowHandle()->transientParent() == shown.desk.window(*shown.form)->windowHandle());
      box.button(due.first)->click();
    });
    boxes.show({"t", "x", due.buttons, due.icon});
  }
}

TEST_CASE("A word of a box breaks behind each eighty characters, and a text of 1,200 is the longest that is whole") {
  const auto shownText = [](const std::string& text) {
    trial::Shown shown;
    QString found;
    QTimer::singleShot(0, qApp, [&] {
      auto& box = dynamic_cast<QMessageBox&>(*QApplication::activeModalWidget());
      found = box.text();
      box.close();
    });
    QtMessageBoxes(shown.desk).show({"t", text, BoxButtons::Ok, BoxIcon::Information});
    return found;
  };
  const QString here(QChar(0x200B));
  CHECK(shownText(std::string(80, 'x')) == QString(80, 'x'));
  CHECK(shownText(std::string(161, 'x')) == QString(80, 'x') + here + QString(80, 'x') + here + "x");
  CHECK(shownText("a " + std::string(80, 'x')) == "a " + QString(80, 'x'));
  std::string words;
  for (int word = 0; word < 240; ++word) words += "word ";
  CHECK(shownText(words).size() == 1200);
  const QString cut = shownText(words + "x");
  CHECK(cut.size() == 1201);
  CHECK(cut[600] == QChar(0x2026));
  CHECK(cut.startsWith("word word"));
  CHECK(cut.endsWith("word x"));
}

TEST_CASE("A file dialog is the toolkit's own, named for what it does, and offers the patterns that it filters by") {
  trial::Shown shown;
  QtFileDialogs files(shown.desk);
  for (const bool opens : {true, false}) {
    QTimer::singleShot(0, qApp, [&] {
      auto& dialog = dynamic_cast<QFileDialog&>(*QApplication::activeModalWidget());
      CHECK(dialog.windowTitle() == (opens ? "Open" : "Save As"));
      CHECK(dialog.windowModality() == Qt::WindowModal);
      CHECK(dialog.testOption(QFileDialog::DontUseNativeDialog));
      CHECK(dialog.testOption(QFileDialog::DontConfirmOverwrite) == opens);
      CHECK_FALSE(dialog.testOption(QFileDialog::ReadOnly));
      CHECK(dialog.acceptMode() == (opens ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave));
      CHECK(dialog.fileMode() == (opens ? QFileDialog::ExistingFile : QFileDialog::AnyFile));
      CHECK(dialog.nameFilters() == QStringList{"ISO Images (*.iso *.img)", "All (*)"});
      CHECK(dialog.windowHandle()->transientParent() == shown.desk.window(*shown.form)->windowHandle());
      dialog.reject();
    });
    const FileDialogFlags flags{.fileMustExist = opens, .overwritePrompt = !opens};
    files.choose({opens ? FileDialog::Mode::Open : FileDialog::Mode::Save, "",
                  "ISO Images (*.iso;*.img)|*.iso;*.img|All (*)|*", flags});
  }
}

TEST_CASE("The frame of a window is its title and its edges, and the splash has none") {
  QWidget window;
  const QStyle& style = *window.style();
  const int edge = style.pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &window);
  const int title = style.pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
  CHECK(frameOf(window) == QSize(2 * edge, 2 * edge + title));
  window.setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
  CHECK(frameOf(window) == QSize(0, 0));
  window.setWindowFlags(Qt::Window);
  const QSize screen = window.screen()->availableSize();
  CHECK(roomFor(window) == (screen - frameOf(window)).expandedTo(QSize(636, 300)));
}

TEST_CASE("Painting a control or a form at once paints it now, and what is not shown is let be") {
  trial::Shown shown;
  auto& label = shown.widget<QLabel>("lblText");
  REQUIRE(comesTrue([&] { return label.isVisible(); }));
  QTest::qWait(20);
  int paints = 0;
  count(paints, label);
  shown.desk.repaint(shown.form->lblText);
  CHECK(paints == 1);
  shown.desk.repaint(shown.form->Timer1);
  const auto other = std::make_shared<trial::TrialForm>(shown.desk);
  shown.desk.repaint(*other);
  shown.desk.repaint(other->lblText);
  CHECK(paints == 1);
}

TEST_CASE("The program goes on when its last window is closed") {
  const QtDesk desk;
  CHECK_FALSE(QApplication::quitOnLastWindowClosed());
}

TEST_CASE("A layout that cannot be saved finds refuge in the user's folders first, and then in everybody's") {
  const Lines everybody{"/var/tmp", "/tmp", "/dev/shm"};
  const Variable home("HOME", "/home/anna");
  const Variable runtime("XDG_RUNTIME_DIR", "relative");
  const Variable temporary("TMPDIR", nullptr);
  Lines due{"/home/anna"};
  due.insert(due.end(), everybody.begin(), everybody.end());
  CHECK(texts(LinuxProcess().refuges()) == due);
  const Variable own("XDG_RUNTIME_DIR", "/run/user/1");
  const Variable also("TMPDIR", "/scratch");
  const Variable none("HOME", nullptr);
  due = {"/run/user/1", "/scratch"};
  due.insert(due.end(), everybody.begin(), everybody.end());
  CHECK(texts(LinuxProcess().refuges()) == due);
}

TEST_CASE("What the program has to tell without a window goes to the error stream under its name") {
  std::ostringstream told;
  std::streambuf* before = std::cerr.rdbuf(told.rdbuf());
  LinuxProcess().tell("no display");
  std::cerr.rdbuf(before);
  CHECK(told.str() == "Trackloom: no display\n");
}

TEST_CASE("A signal leaves the error number as the interrupted call has it, and lets the call go on") {
  struct sigaction before {};
  ::sigaction(SIGTERM, nullptr, &before);
  std::vector<int> told;
  const ForcedEnd forcedEnd([&](int status) { told.push_back(status); });
  struct sigaction caught {};
  ::sigaction(SIGTERM, nullptr, &caught);
  CHECK((caught.sa_flags & SA_RESTART) != 0);
  // The pipe to the event loop takes 64 KiB, so the last of these signals find it full.
  for (int raised = 0; raised < 70000; ++raised) {
    errno = ENOTTY;
    caught.sa_handler(SIGTERM);
    if (errno != ENOTTY) break;
  }
  CHECK(errno == ENOTTY);
  CHECK(comesTrue([&] { return !told.empty(); }));
  ::sigaction(SIGTERM, &before, nullptr);
}

TEST_CASE("A status bar has no grip and stands in line, and its panels show plain text in equal shares") {
  trial::Shown shown;
  auto& bar = shown.widget<QStatusBar>("StatusBar1");
  CHECK_FALSE(bar.isSizeGripEnabled());
  CHECK_FALSE(bar.testAttribute(Qt::WA_ContentsMarginsRespectsSafeArea));
  CHECK(bar.contentsMargins() == QMargins(-2, 0, 0, 0));
  const auto panels = bar.findChildren<QLabel*>();
  REQUIRE(panels.size() == 2);
  shown.form->StatusBar1.SetPanelText(1, "<b>first</b>");
  shown.form->StatusBar1.SetPanelText(2, "second");
  CHECK(panels[0]->text() == "<b>first</b>");
  CHECK(panels[1]->text() == "second");
  for (const QLabel* panel : panels) CHECK(panel->textFormat() == Qt::PlainText);
}

TEST_CASE("Each kind of control comes and goes, wakes and sleeps, takes the focus and shows its words anew") {
  trial::Shown shown;
  QWidget& window = *shown.desk.window(*shown.form);
  REQUIRE(QTest::qWaitForWindowActive(&window));
  shown.form->optFirst.select();
  for (Control* control : shown.form->controls()) {
    auto* widget = window.findChild<QWidget*>(QString::fromStdString(control->name()));
    if (widget == nullptr) continue;
    INFO(control->name());
    for (const bool on : {false, true}) {
      control->Enabled = on;
      CHECK(widget->isEnabled() == on);
      control->Visible = on;
      CHECK(widget->isVisible() == on);
    }
    if (widget->focusPolicy() == Qt::NoFocus) continue;
    control->SetFocus();
    CHECK(widget->hasFocus());
  }
  shown.form->chkTick.Caption = "New tick";
  CHECK(shown.widget<QWidget>("chkTick").property("text") == "New tick");
  shown.form->optSecond.Caption = "New option";
  CHECK(shown.widget<QWidget>("optSecond").property("text") == "New option");
  shown.form->Frame1.Caption = "New frame";
  CHECK(shown.widget<QWidget>("Frame1").property("title") == "New frame");
  CHECK(shown.widget<QTabBar>("TS1").tabText(0) == "One");
  CHECK(shown.widget<QTabBar>("TS1").tabText(1) == "Two");
  shown.form->TS1.SelectedTab = 2;
  CHECK(shown.widget<QTabBar>("TS1").currentIndex() == 1);
  const auto& bar = shown.widget<QAbstractSlider>("VScroll1");
  CHECK(bar.minimum() == 1);
  CHECK(bar.maximum() == 20);
  CHECK(bar.pageStep() == 1);
  shown.form->VScroll1.Value = 7;
  CHECK(bar.value() == 7);
  CHECK(shown.widget<QWidget>("Image1").sizePolicy().retainSizeWhenHidden());
}

TEST_CASE("The button with the focus takes Enter and keypad's Enter, and Esc is the cancel button's from anywhere") {
  trial::Shown shown;
  shown.form->cmdOK.Default = true;
  shown.form->cmdCancel.Cancel = true;
  CHECK(shown.widget<QPushButton>("cmdOK").isDefault());
  shown.form->txtName.SetFocus();
  shown.press(Qt::Key_Enter);
  shown.press(Qt::Key_Escape);
  shown.form->cmdCancel.SetFocus();
  shown.press(Qt::Key_Enter);
  shown.press(Qt::Key_Tab);
  shown.press(Qt::Key_Insert);
  Lines deeds = shown.form->heard;
  std::erase(deeds, "Activate");
  CHECK(deeds == Lines{"cmdOK", "cmdCancel", "cmdCancel"});
}

TEST_CASE("A widget of every kind needs a control, unless it has no name or is part of another widget") {
  const Lines stray{"stray: a widget without a control"};
  CHECK(problemsWith([](QWidget& window) { named(make<QPushButton>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QLabel>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QLineEdit>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QComboBox>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QTreeView>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QProgressBar>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QTabBar>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QScrollBar>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QStatusBar>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<QGroupBox>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { named(make<PictureView>(window), "stray"); }) == stray);
  CHECK(problemsWith([](QWidget& window) { make<QLabel>(window); }).empty());
  CHECK(problemsWith([](QWidget& window) { named(make<QLabel>(window), "qt_part"); }).empty());
  CHECK(problemsWith([](QWidget& window) { named(make<QWidget>(window), "stray"); }).empty());
  CHECK(problemsWith([](QWidget& window) { named(make<QLabel>(make<QTabBar>(window)), "stray"); }).empty());
  CHECK(problemsWith([](QWidget& window) { named(make<QLabel>(make<QComboBox>(window)), "stray"); }).empty());
  CHECK(problemsWith([](QWidget& window) { named(make<QLabel>(make<QScrollArea>(window)), "stray"); }).empty());
  CHECK(problemsWith([](QWidget& window) { named(make<QLabel>(make<QStatusBar>(window)), "stray"); }).empty());
  CHECK(problemsWith([](QWidget& window) { named(make<QLabel>(make<QToolBar>(window)), "stray"); }).empty());
}

}  // namespace trackloom
