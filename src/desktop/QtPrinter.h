#pragma once

#include <QPointer>
#include <string>

#include "desktop/Paper.h"
#include "desktop/PrintDocument.h"
#include "desktop/PrintPreview.h"
#include "ports/FileDialogs.h"
#include "ports/VSPrinter.h"
#include "runtime/Paths.h"

class QPrinter;

namespace trackloom {

class QtDesk;

/// One print control: keeps the document that it was told, and lays it out on whatever paper its user prints on.
class QtPrinter final : public VSPrinter {
 public:
  QtPrinter(QtDesk& desk, FileDialogs& files, HostPath folder);
  ~QtPrinter() override;
  QtPrinter(const QtPrinter&) = delete;
  QtPrinter& operator=(const QtPrinter&) = delete;

  /// Its face, which goes with its window or with the control.
  PrintPreview* preview() const { return preview_; }

  PrinterFont& Font() override { return font_; }
  PrinterFont& HeaderFont() override { return headerFont_; }
  void SetHeaderText(const std::string& text) override { document_.header = text; }
  void SetFooterText(const std::string& text) override { document_.footer = text; }
  void SetMarginA(std::int16_t twips) override { document_.margins.left = twips; }
  void SetMarginB(std::int16_t twips) override { document_.margins.top = twips; }
  void SetMarginC(std::int16_t twips) override { document_.margins.right = twips; }
  double PageWidth() override { return twipsOf(Paper::Letter).width(); }
  void StartDoc() override { document_.tables.clear(); }
  void AddTable(const std::string& format, const std::string& header, const std::string& rows,
                std::int32_t headerColour, std::optional<std::int32_t> missing, bool appended) override;
  void EndDoc() override { showPages(); }
  void SetZoom(double percent) override;
  void SetWidth(double twips) override;
  void SetHeight(double twips) override;

 private:
  class FontOfDocument final : public PrinterFont {
   public:
    explicit FontOfDocument(DocumentFont& font) : font_(font) {}
    void SetName(const std::string& name) override { font_.name = name; }
    void SetSize(std::int16_t size) override { font_.size = size; }

   private:
    DocumentFont& font_;
  };

  void showPages();
  void choosePaper(Paper paper);
  void print();
  void savePdf();

  QtDesk& desk_;
  FileDialogs& files_;
  const HostPath folder_;
  PrintDocument document_;
  FontOfDocument font_{document_.font};
  FontOfDocument headerFont_{document_.headerFont};
  Paper paper_;
  QPointer<PrintPreview> preview_;
};

}  // namespace trackloom
