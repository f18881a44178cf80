#pragma once

#include <memory>

#include "controls/Form.h"
#include "ports/VSPrinter.h"

namespace trackloom {

struct Session;
struct PrintingForms;

/// The page as it will be printed: the listing of frmPrintList as one table in the print control, which fills the
/// window.
class frmPrint final : public Form {
 public:
  frmPrint(Session& session, PrintingForms& forms);

 private:
  void Load() override;
  void resize();
  void setFonts();
  void setMargins();
  std::string tableFormat();
  void printTable();
  std::string rowText(int row);

  Session& session_;
  PrintingForms& forms_;
  std::unique_ptr<VSPrinter> VSPrinter1;
  Connection resized_;
};

}  // namespace trackloom
