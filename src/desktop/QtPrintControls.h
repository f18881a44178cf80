#pragma once

#include <QPointer>
#include <memory>
#include <string>
#include <vector>

#include "desktop/PrintPreview.h"
#include "ports/FileDialogs.h"
#include "ports/VSPrinter.h"
#include "runtime/Paths.h"

namespace trackloom {

class QtDesk;

/// Print controls on the toolkit's print support: a preview that prints on any printer of the system and saves PDF
/// files. The paper that its user chooses is kept beside the program.
class QtPrintControls final : public PrintControls {
 public:
  /// Desk and dialogs outlive the controls.
  QtPrintControls(QtDesk& desk, FileDialogs& files, HostPath programFolder);

  std::unique_ptr<VSPrinter> create() override;
  std::vector<std::string> ScreenFonts() override;

  /// Puts the control that was made last into its form's window.
  void standIn(QWidget& window);

 private:
  QtDesk& desk_;
  FileDialogs& files_;
  HostPath folder_;
  QPointer<PrintPreview> made_;
};

}  // namespace trackloom
