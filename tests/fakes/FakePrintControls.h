#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ports/VSPrinter.h"

namespace trackloom::fakes {

/// A print control that writes down what it is told.
class FakePrinter final : public VSPrinter {
 public:
  using Note = std::function<void(const std::string&)>;
  FakePrinter(Note note, double pageWidth);
  ~FakePrinter() override;

  PrinterFont& Font() override;
  PrinterFont& HeaderFont() override;
  void SetHeaderText(const std::string& text) override;
  void SetFooterText(const std::string& text) override;
  void SetMarginA(std::int16_t twips) override;
  void SetMarginB(std::int16_t twips) override;
  void SetMarginC(std::int16_t twips) override;
  double PageWidth() override;
  void StartDoc() override;
  void AddTable(const std::string& format, const std::string& header, const std::string& rows,
                std::int32_t headerColour, std::optional<std::int32_t> missing, bool appended) override;
  void EndDoc() override;
  void SetZoom(double percent) override;
  void SetWidth(double twips) override;
  void SetHeight(double twips) override;

 private:
  class FakeFont final : public PrinterFont {
   public:
    FakeFont(const Note& note, std::string name);
    void SetName(const std::string& name) override;
    void SetSize(std::int16_t size) override;

   private:
    const Note& note_;
    std::string name_;
  };

  const Note note_;
  const double pageWidth_;
  FakeFont font_;
  FakeFont headerFont_;
};

/// A screen with some fonts, and print controls whose calls are kept together.
class FakePrintControls final : public PrintControls {
 public:
  FakePrintControls();
  ~FakePrintControls() override;

  std::vector<std::string> fonts;
  double pageWidth = 12240;
  std::vector<std::string> transcript;

  std::unique_ptr<VSPrinter> create() override;
  std::vector<std::string> ScreenFonts() override;
};

}  // namespace trackloom::fakes
