#include "desktop/QtPrintControls.h"

#include <QFontDatabase>
#include <utility>

#include "desktop/QtPrinter.h"
#include "desktop/ScreenFit.h"
#include "desktop/Shown.h"

namespace trackloom {

QtPrintControls::QtPrintControls(QtDesk& desk, FileDialogs& files, HostPath programFolder)
    : desk_(desk), files_(files), folder_(std::move(programFolder)) {}

std::unique_ptr<VSPrinter> QtPrintControls::create() {
  auto printer = std::make_unique<QtPrinter>(desk_, files_, folder_);
  made_ = printer->preview();
  return printer;
}

std::vector<std::string> QtPrintControls::ScreenFonts() {
  std::vector<std::string> fonts;
  for (const QString& family : QFontDatabase::families())
    if (!QFontDatabase::isPrivateFamily(family)) fonts.push_back(entered(family));
  return fonts;
}

void QtPrintControls::standIn(QWidget& window) {
  if (made_ == nullptr) return;
  made_->setParent(&window);
  made_->show();
  const QSize most = roomFor(window);
  window.setMinimumSize(window.minimumSize().expandedTo(made_->minimumSizeHint()).boundedTo(most));
  window.resize(window.size().expandedTo(window.minimumSize()).boundedTo(most));
  made_->resize(window.size());
  made_->setFocus();
}

}  // namespace trackloom
