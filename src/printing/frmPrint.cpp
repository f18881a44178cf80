#include "printing/frmPrint.h"

#include <array>
#include <charconv>
#include <utility>

#include "model/Session.h"
#include "printing/PrintingForms.h"

namespace trackloom {

namespace {

constexpr std::int32_t White = 0xFFFFFF;
constexpr std::pair<const char*, std::int32_t> Colours[] = {{"Red", 0x0000FF},     {"Green", 0x00FF00},
                                                            {"Yellow", 0x00FFFF},  {"Blue", 0xFF0000},
                                                            {"Magenta", 0xFF00FF}, {"Cyan", 0xFFFF00}};

std::int32_t colourNamed(const std::string& name) {
  for (const auto& [known, colour] : Colours)
    if (name == known) return colour;
  return White;
}

/// A decimal number without rounding, in the sign of no locale.
std::string decimal(double value) {
  constexpr int Digits = 15;
  std::array<char, 32> text{};
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, Digits);
  return {text.data(), end};
}

}  // namespace

frmPrint::frmPrint(Session& session, PrintingForms& forms)
    : Form(session.host, "frmPrint", ""),
      session_(session),
      forms_(forms),
      VSPrinter1(session.ports.prints.create()),
      resized_(changed.connect([this] { resize(); })) {}

void frmPrint::Load() {
  caption = session_.mod.PrintStyle == InsertTemplate ? "Print - Audio CD Back Tray Insert Template"
                                                      : "Print - Standard 8 1/2 x 11 Page";
  setFonts();
  VSPrinter1->SetHeaderText(session_.mod.PrintTitle);
  if (session_.mod.PrintStyle == InsertTemplate) setMargins();
  VSPrinter1->StartDoc();
  printTable();
  if (session_.mod.PrintStyle != InsertTemplate) VSPrinter1->SetFooterText("|- Page %d -");
  VSPrinter1->EndDoc();
  VSPrinter1->SetZoom(100);
}

void frmPrint::setFonts() {
  VSPrinter1->HeaderFont().SetName(session_.mod.ListingFont);
  VSPrinter1->Font().SetName(session_.mod.ListingFont);
  VSPrinter1->Font().SetSize(session_.mod.ListingFontSize);
  VSPrinter1->HeaderFont().SetSize(session_.mod.ListingFontSize);
}

void frmPrint::setMargins() {
  VSPrinter1->SetMarginA(2520);
  VSPrinter1->SetMarginB(1500);
  VSPrinter1->SetMarginC(2160);
}

/// The columns take shares of the whole page; those of the insert fall on its card.
std::string frmPrint::tableFormat() {
  const double page = VSPrinter1->PageWidth();
  const bool insert = session_.mod.PrintStyle == InsertTemplate;
  const std::string number = "+" + decimal(page / (insert ? 20 : 19));
  const std::string text = "|+" + decimal(page / (insert ? 4 : 3));
  return number + text + text + "|>" + decimal(page / 17) + ";";
}

void frmPrint::printTable() {
  const std::string format = tableFormat();
  const std::string header = "#|Artist|Title|Time;";
  const std::int32_t colour = colourNamed(session_.mod.HeaderColour);
  const int rows = forms_.frmPrintList->ListView1.Count();
  if (rows > 0) VSPrinter1->AddTable(format, header, rowText(1), colour);
  for (int row = 2; row <= rows; ++row) VSPrinter1->AddTable(format, header, rowText(row), colour, std::nullopt, true);
}

std::string frmPrint::rowText(int row) {
  const ListView& list = forms_.frmPrintList->ListView1;
  return list.Item(row).Text + "|" + list.SubItem(row, 1) + "|" + list.SubItem(row, 2) + "|" +
         session_.mod.TrackTimes.at(static_cast<std::size_t>(row) - 1) + ";";
}

void frmPrint::resize() {
  const Placement& place = placement;
  if (place == Placement{} || place.state == WindowState::Minimized) return;
  VSPrinter1->SetWidth(place.width);
  VSPrinter1->SetHeight(place.height);
}

}  // namespace trackloom
