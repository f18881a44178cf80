#include "desktop/QtPrinter.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>
#include <memory>
#include <utility>

#include "desktop/PageOutput.h"
#include "desktop/QtDesk.h"
#include "desktop/Shown.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

/// A name for the file that no file system refuses.
std::string fileNameFor(const std::string& title) {
  std::string name = title.empty() ? "Listing" : title;
  std::replace(name.begin(), name.end(), HostSep, '_');
  return name + ".pdf";
}

}  // namespace

QtPrinter::QtPrinter(QtDesk& desk, FileDialogs& files, HostPath folder)
    : desk_(desk), files_(files), folder_(std::move(folder)), paper_(loadPaper(folder_)) {
  preview_ = std::make_unique<PrintPreview>().release();
  preview_->setPaper(paper_);
  preview_->printWanted = [this] { desk_.enter([this] { print(); }); };
  preview_->saveWanted = [this] { desk_.enter([this] { savePdf(); }); };
  preview_->paperChosen = [this](Paper paper) { desk_.enter([this, paper] { choosePaper(paper); }); };
}

QtPrinter::~QtPrinter() {
  if (preview_ == nullptr) return;
  preview_->forget();
  // It may be in the middle of an event.
  preview_->deleteLater();
}

void QtPrinter::AddTable(const std::string& format, const std::string& header, const std::string& rows,
                         std::int32_t headerColour, std::optional<std::int32_t> /*missing*/, bool appended) {
  if (!appended || document_.tables.empty()) document_.tables.push_back({format, header, headerColour, {}});
  document_.tables.back().rows.push_back(rows);
}

void QtPrinter::showPages() {
  if (preview_) preview_->setPages(layOut(document_, twipsOf(paper_)));
}

void QtPrinter::choosePaper(Paper paper) {
  paper_ = paper;
  savePaper(folder_, paper);
  showPages();
}

void QtPrinter::SetZoom(double percent) {
  if (preview_) preview_->setZoom(percent);
}

void QtPrinter::SetWidth(double twips) {
  if (preview_) preview_->resize(static_cast<int>(twips / TwipsPerPixel), preview_->height());
}

void QtPrinter::SetHeight(double twips) {
  if (preview_) preview_->resize(preview_->width(), static_cast<int>(twips / TwipsPerPixel));
}

void QtPrinter::print() {
  if (QPrinterInfo::availablePrinterNames().isEmpty())
    return preview_->say("No printer is set up on this computer. Save as PDF keeps the pages for any other.");
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(shown(document_.header));
  printer.setPageSize(pageSize(paper_));
  printer.setFullPage(true);
  QWidget* before = preview_->window();
  QPrintDialog dialog(&printer, before);
  dialog.setOption(QAbstractPrintDialog::PrintPageRange);
  dialog.setWindowModality(Qt::WindowModal);
  desk_.family().join(dialog, before);
  const Family::Turn turn(desk_.family(), dialog, before);
  if (dialog.exec() != QDialog::Accepted || preview_ == nullptr) return;
  preview_->say(printOn(document_, printer) ? "" : "The pages could not be printed.");
}

void QtPrinter::savePdf() {
  const FileDialog dialog{FileDialog::Mode::Save,
                          HomeFolder().text + HostSep + fileNameFor(document_.header),
                          "PDF Files (*.pdf)|*.pdf",
                          {.pathMustExist = true, .overwritePrompt = true}};
  const std::optional<HostPath> file = files_.choose(dialog);
  if (!file || preview_ == nullptr) return;
  try {
    ReplaceFile(*file, pdfOf(document_, paper_));
    preview_->say("Saved as " + file->text);
  } catch (const RuntimeError& error) {
    preview_->say(file->text + " could not be saved: " + error.description());
  }
}

}  // namespace trackloom
