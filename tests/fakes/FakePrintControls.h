#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ports/VSPrinter.h"
#include "runtime/Numbers.h"

namespace trackloom::fakes {

/// A print control that writes down what it is told.
class FakePrinter final : public VSPrinter {
 public:
  using Note = std::function<void(const std::string&)>;
  FakePrinter(Note note, double pageWidth) : note_(std::move(note)), pageWidth_(pageWidth) {}

  PrinterFont& Font() override { return font_; }
  PrinterFont& HeaderFont() override { return headerFont_; }
  void SetHeaderText(const std::string& text) override { note_("HeaderText = " + text); }
  void SetFooterText(const std::string& text) override { note_("FooterText = " + text); }
  void SetMarginA(std::int16_t twips) override { note_("MarginA = " + std::to_string(twips)); }
  void SetMarginB(std::int16_t twips) override { note_("MarginB = " + std::to_string(twips)); }
  void SetMarginC(std::int16_t twips) override { note_("MarginC = " + std::to_string(twips)); }
  double PageWidth() override { return pageWidth_; }
  void StartDoc() override { note_("StartDoc"); }
  void AddTable(const std::string& format, const std::string& header, const std::string& rows,
                std::int32_t headerColour, std::optional<std::int32_t> missing, bool appended) override {
    note_("AddTable " + format + " " + header + " " + rows + " " + std::to_string(headerColour) +
          (missing ? " " + std::to_string(*missing) : "") + (appended ? " appended" : ""));
  }
  void EndDoc() override { note_("EndDoc"); }
  void SetZoom(double percent) override { note_("Zoom = " + std::to_string(ToInt16(percent))); }
  void SetWidth(double twips) override { note_("Width = " + std::to_string(ToInt16(twips))); }
  void SetHeight(double twips) override { note_("Height = " + std::to_string(ToInt16(twips))); }

 private:
  class FakeFont final : public PrinterFont {
   public:
    FakeFont(const Note& note, std::string name) : note_(note), name_(std::move(name)) {}
    void SetName(const std::string& name) override { note_(name_ + ".Name = " + name); }
    void SetSize(std::int16_t size) override { note_(name_ + ".Size = " + std::to_string(size)); }

   private:
    const Note& note_;
    std::string name_;
  };

  const Note note_;
  const double pageWidth_;
  FakeFont font_{note_, "Font"};
  FakeFont headerFont_{note_, "HeaderFont"};
};

/// A screen with some fonts, and print controls whose calls are kept together.
class FakePrintControls final : public PrintControls {
 public:
  std::vector<std::string> fonts{"Serif", "Arial", "Mono"};
  double pageWidth = 12240;
  std::vector<std::string> transcript;

  std::unique_ptr<VSPrinter> create() override {
    return std::make_unique<FakePrinter>([this](const std::string& line) { transcript.push_back(line); }, pageWidth);
  }
  std::vector<std::string> ScreenFonts() override { return fonts; }
};

}  // namespace trackloom::fakes
