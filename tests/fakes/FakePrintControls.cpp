#include "fakes/FakePrintControls.h"

#include <utility>

#include "runtime/Numbers.h"

namespace trackloom::fakes {

FakePrinter::FakeFont::FakeFont(const Note& note, std::string name) : note_(note), name_(std::move(name)) {}

void FakePrinter::FakeFont::SetName(const std::string& name) {
  note_(name_ + ".Name = " + name);
}

void FakePrinter::FakeFont::SetSize(std::int16_t size) {
  note_(name_ + ".Size = " + std::to_string(size));
}

FakePrinter::FakePrinter(Note note, double pageWidth)
    : note_(std::move(note)), pageWidth_(pageWidth), font_(note_, "Font"), headerFont_(note_, "HeaderFont") {}

FakePrinter::~FakePrinter() = default;

PrinterFont& FakePrinter::Font() {
  return font_;
}

PrinterFont& FakePrinter::HeaderFont() {
  return headerFont_;
}

void FakePrinter::SetHeaderText(const std::string& text) {
  note_("HeaderText = " + text);
}

void FakePrinter::SetFooterText(const std::string& text) {
  note_("FooterText = " + text);
}

void FakePrinter::SetMarginA(std::int16_t twips) {
  note_("MarginA = " + std::to_string(twips));
}

void FakePrinter::SetMarginB(std::int16_t twips) {
  note_("MarginB = " + std::to_string(twips));
}

void FakePrinter::SetMarginC(std::int16_t twips) {
  note_("MarginC = " + std::to_string(twips));
}

double FakePrinter::PageWidth() {
  return pageWidth_;
}

void FakePrinter::StartDoc() {
  note_("StartDoc");
}

void FakePrinter::AddTable(const std::string& format, const std::string& header, const std::string& rows,
                           std::int32_t headerColour, std::optional<std::int32_t> missing, bool appended) {
  note_("AddTable " + format + " " + header + " " + rows + " " + std::to_string(headerColour) +
        (missing ? " " + std::to_string(*missing) : "") + (appended ? " appended" : ""));
}

void FakePrinter::EndDoc() {
  note_("EndDoc");
}

void FakePrinter::SetZoom(double percent) {
  note_("Zoom = " + std::to_string(ToInt16(percent)));
}

void FakePrinter::SetWidth(double twips) {
  note_("Width = " + std::to_string(ToInt16(twips)));
}

void FakePrinter::SetHeight(double twips) {
  note_("Height = " + std::to_string(ToInt16(twips)));
}

FakePrintControls::FakePrintControls() : fonts{"Serif", "Arial", "Mono"} {}

FakePrintControls::~FakePrintControls() = default;

std::unique_ptr<VSPrinter> FakePrintControls::create() {
  return std::make_unique<FakePrinter>([this](const std::string& line) { transcript.push_back(line); }, pageWidth);
}

std::vector<std::string> FakePrintControls::ScreenFonts() {
  return fonts;
}

}  // namespace trackloom::fakes
