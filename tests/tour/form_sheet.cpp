#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QPixmap>
#include <QStyle>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string_view>

#include "desktop/Appearance.h"
#include "desktop/FrontPanel.h"
#include "desktop/Host.h"
#include "desktop/Look.h"
#include "desktop/QtDesk.h"
#include "desktop/QtEvents.h"
#include "desktop/QtFileDialogs.h"
#include "desktop/QtMessageBoxes.h"
#include "desktop/QtPrintControls.h"
#include "desktop/ShelfList.h"
#include "engines/virtual/FolderShelf.h"
#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "fakes/FakeDrives.h"
#include "fakes/FakeFolderListing.h"
#include "fakes/FakeRipping.h"
#include "tour/FilledForms.h"

namespace trackloom {

namespace {

/// A process whose program folder is another than that of its executable.
class SheetProcess final : public Process {
 public:
  explicit SheetProcess(std::string folder) : folder_(std::move(folder)) {}
  std::string executableFolder() override { return folder_; }
  bool isSecondInstance() override { return false; }
  std::vector<HostPath> refuges() override { return {}; }
  void tell(const std::string& /*words*/) override {}
  [[noreturn]] void end(int status) override { std::exit(status); }

 private:
  std::string folder_;
};

/// For a sheet nothing is opened and no help is shown.
struct Nobody final : ShellOpener, HelpEngine {
  void open(const ShellOrder& /*order*/) override {}
  std::intptr_t HtmlHelp(std::intptr_t, const std::string&, std::uint32_t, std::intptr_t) override { return 0; }
  void askWhatsThis(std::intptr_t) override {}
};

/// A window as it stands on the desktop, without its frame.
struct Portrait {
  QString name;
  QPixmap picture;
  QRect place;
};

constexpr int SheetWidth = 2400;
constexpr int Air = 24;
constexpr int NameHeight = 22;

Portrait portraitOf(QtDesk& desk, Form& form) {
  desk.show(form);
  // What follows from the show within the window is due; the activation, which some forms act upon, is not.
  QCoreApplication::sendPostedEvents();
  QPixmap picture = desk.window(form)->grab();
  const QSize size = picture.deviceIndependentSize().toSize();
  desk.hide(form);
  return {QString::fromStdString(form.name()), std::move(picture), QRect(QPoint(), size)};
}

/// Places the portraits in rows from left to right; the height that they take.
int arrange(std::vector<Portrait>& portraits) {
  QPoint next(Air, Air);
  int bottom = 0;
  for (Portrait& portrait : portraits) {
    if (next.x() + portrait.place.width() + Air > SheetWidth) next = QPoint(Air, bottom + Air);
    portrait.place.moveTopLeft(next);
    next.rx() += portrait.place.width() + Air;
    bottom = std::max(bottom, portrait.place.bottom() + NameHeight);
  }
  return bottom + Air;
}

bool paintSheet(std::vector<Portrait> portraits, const QString& file) {
  const int height = arrange(portraits);
  const double scale = qApp->devicePixelRatio();
  QPixmap sheet(QSize(SheetWidth, height) * scale);
  sheet.setDevicePixelRatio(scale);
  sheet.fill(QColor(0x78, 0x80, 0x88));
  QPainter painter(&sheet);
  painter.setPen(Qt::white);
  for (const Portrait& portrait : portraits) {
    painter.drawPixmap(portrait.place.topLeft(), portrait.picture);
    painter.drawText(portrait.place.adjusted(0, portrait.place.height() + 2, 0, NameHeight), Qt::AlignLeft,
                     portrait.name);
  }
  painter.end();
  return sheet.save(file);
}

/// Each picture as a file of its own, in the width of a page of the help.
bool savePictures(const std::vector<Portrait>& portraits, const QString& folder) {
  constexpr int PageWidth = 560;
  return std::all_of(portraits.begin(), portraits.end(), [&folder](const Portrait& portrait) {
    QImage picture = portrait.picture.toImage();
    if (picture.width() > PageWidth) picture = picture.scaledToWidth(PageWidth, Qt::SmoothTransformation);
    return picture.save(folder + "/" + portrait.name + ".png", "PNG", 0);
  });
}

/// A list that stands already shows rows added in a row only after a short rest.
void showAllRows() {
  constexpr int Rest = 100;
  QEventLoop loop;
  QTimer::singleShot(Rest, &loop, &QEventLoop::quit);
  loop.exec();
}

Portrait portraitOfPanel(const std::string& home, ShellOpener& opener) {
  const auto shelf = std::make_shared<engines::virtualrecorder::FolderShelf>(HostPath(home + "/Virtual Recorder"));
  for (const BlankDisc kind : {BlankDisc::CdR74, BlankDisc::CdR80, BlankDisc::CdRw80}) shelf->addBlank(kind);
  shelf->rename("Disc 0002", "Holiday pictures");
  FrontPanel panel({shelf}, opener, [] { return std::string(); });
  panel.show();
  while (panel.findChild<ShelfList*>()->topLevelItemCount() == 0) showAllRows();
  QPixmap picture = panel.grab();
  return {panel.objectName(), std::move(picture), QRect(QPoint(), panel.size())};
}

using Use = std::function<bool(std::vector<Portrait>)>;

/// Paints every form of a program that works in a folder of its own, and its recorder's front panel, in the palette
/// that the application has now.
bool usePortraits(const Use& use) {
  const QTemporaryDir folder;
  const std::string home = folder.path().toStdString();
  engines::virtualrecorder::createVirtualRecorder(HostPath(home + "/Virtual Recorder"));
  QtDesk desk;
  QtEventPump pump;
  QtEventQueue events(desk);
  QtPatience patience(desk);
  QtMessageBoxes boxes(desk);
  QtFileDialogs files(desk);
  fakes::FakeFolderListing folders;
  fakes::FakeDrives drives;
  QtPrintControls prints(desk, files, HostPath(home));
  desk.setExtras([&prints](const std::string& form, QWidget& window) {
    if (form == "frmPrint") prints.standIn(window);
  });
  SheetProcess process(home);
  Nobody nobody;
  NoCommonControls commonControls;
  NoRegistry registry;
  NoFileVersions fileVersions;
  fakes::FakeRipping ripping;
  engines::writer::DiscWriters writers(engines::virtualrecorder::findVirtualRecorders(HostPath(home)),
                                       std::make_shared<engines::audio::AudioFiles>(), events, patience,
                                       {0, HostPath(home)});
  Program program(desk, {boxes,
                         files,
                         folders,
                         drives,
                         pump,
                         process,
                         writers,
                         nobody,
                         nobody,
                         prints,
                         ripping.rippers,
                         ripping.encoders,
                         ripping.databases,
                         commonControls,
                         registry,
                         fileVersions,
                         {}});
  program.start();
  program.forms().shell.frmOpen->Timer1.tick();
  // At its first activation the main window would ask the user for a layout.
  program.session().frmListing().Loading = false;
  const auto forms = filledForms(program, AudioLayout);
  // It lets events run, and the forms behind it must not hear of their activation.
  Portrait panel = portraitOfPanel(home, nobody);
  showAllRows();
  std::vector<Portrait> portraits;
  for (const auto& form : forms) portraits.push_back(portraitOf(desk, *form));
  portraits.push_back(std::move(panel));
  return use(std::move(portraits));
}

bool makeSheets(const QString& folder) {
  const auto painted = [&folder](const char* file) {
    return [path = folder + file](std::vector<Portrait> portraits) { return paintSheet(std::move(portraits), path); };
  };
  const bool light = usePortraits(painted("/sheet-light.png"));
  QApplication::setPalette(darkPalette());
  return usePortraits(painted("/sheet-dark.png")) && light;
}

bool makePictures(const QString& folder) {
  return usePortraits([&folder](const std::vector<Portrait>& portraits) { return savePictures(portraits, folder); });
}

}  // namespace

}  // namespace trackloom

/// Writes a picture of all forms and the recorder's front panel side by side, one on a light desktop and one on a dark
/// one: form-sheet <folder>. With --each before the folder a picture of each, for the pages of the help.
int main(int argc, char** argv) {
  const bool each = argc == 3 && std::string_view(argv[1]) == "--each";
  if (argc != 2 && !each) {
    std::fputs("usage: form-sheet [--each] <folder>\n", stderr);
    return 2;
  }
  // The sheets need no screen, and are the same on every one.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  trackloom::dress();
  QApplication::setPalette(QApplication::style()->standardPalette());
  const QString folder = QString::fromLocal8Bit(argv[argc - 1]);
  if (each ? trackloom::makePictures(folder) : trackloom::makeSheets(folder)) return 0;
  std::fprintf(stderr, "form-sheet: %s: cannot be written to\n", argv[argc - 1]);
  return 1;
}
