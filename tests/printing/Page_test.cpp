#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"

namespace trackloom {

using fakes::LayoutMachine;
using Lines = std::vector<std::string>;

namespace {

/// A machine with a listing that has been read, and settings of the page as frmPrintList would hand them over.
class Page : public LayoutMachine {
 public:
  explicit Page(std::int16_t style, std::string colour = "Blue") : LayoutMachine(AudioLayout) {
    mod().PrintStyle = style;
    mod().HeaderColour = std::move(colour);
    mod().ListingFont = "Serif";
    mod().ListingFontSize = 12;
    mod().PrintTitle = "Evenings";
  }

  void addRow(const std::string& artist, const std::string& title, const std::string& time) {
    ListView& list = program().forms().printing.frmPrintList->ListView1;
    const int number = list.Count() + 1;
    list.Add({(number < 10 ? "0" : "") + std::to_string(number), {artist, title}});
    mod().TrackTimes.push_back(time);
  }
  frmPrint& show() { return program().forms().printing.frmPrint.get(); }
  /// What the print control was told while the form loaded.
  const Lines& told() {
    show();
    return prints.transcript;
  }
};

Lines linesWith(const Lines& lines, const std::string& start) {
  Lines found;
  for (const std::string& line : lines)
    if (line.starts_with(start)) found.push_back(line);
  return found;
}

std::string formatOf(const std::string& tableLine) {
  const std::size_t start = tableLine.find(' ') + 1;
  return tableLine.substr(start, tableLine.find(' ', start) - start);
}

}  // namespace

TEST_CASE("On the insert the margins come before the document, and there is no footer") {
  Page page(InsertTemplate);
  page.addRow("Anna", "Aubade", "3:42");
  page.addRow("Ben", "Dance", "11:0");
  page.addRow("Clara", "Nocturne", "2:07");
  const std::string table = "AddTable +612|+3060|+3060|>720; #|Artist|Title|Time; ";
  const std::string blue = " " + std::to_string(0xFF0000);
  CHECK(page.told() == Lines{"HeaderFont.Name = Serif", "Font.Name = Serif", "Font.Size = 12", "HeaderFont.Size = 12",
                             "HeaderText = Evenings", "MarginA = 2520", "MarginB = 1500", "MarginC = 2160", "StartDoc",
                             table + "01|Anna|Aubade|3:42;" + blue, table + "02|Ben|Dance|11:0;" + blue + " appended",
                             table + "03|Clara|Nocturne|2:07;" + blue + " appended", "EndDoc", "Zoom = 100"});
  CHECK(page.show().caption == std::string("Print - Audio CD Back Tray Insert Template"));
}

TEST_CASE("On the standard page the margins are the control's own, and the footer comes behind the rows") {
  Page page(StandardPage, "Green");
  page.addRow("Anna", "Aubade", "3:42");
  const std::string table = "AddTable +644.210526315789|+4080|+4080|>720; #|Artist|Title|Time; ";
  CHECK(page.told() == Lines{"HeaderFont.Name = Serif", "Font.Name = Serif", "Font.Size = 12", "HeaderFont.Size = 12",
                             "HeaderText = Evenings", "StartDoc", table + "01|Anna|Aubade|3:42; 65280",
                             "FooterText = |- Page %d -", "EndDoc", "Zoom = 100"});
  CHECK(page.show().caption == std::string("Print - Standard 8 1/2 x 11 Page"));
}

TEST_CASE("E136: White is white on the page, and so is every colour that nobody knows") {
  const std::vector<std::pair<std::string, int>> colours{
      {"Red", 0x0000FF},  {"Green", 0x00FF00}, {"Yellow", 0x00FFFF}, {"Blue", 0xFF0000}, {"Magenta", 0xFF00FF},
      {"Cyan", 0xFFFF00}, {"White", 0xFFFFFF}, {"Purple", 0xFFFFFF}, {"red", 0xFFFFFF},  {"", 0xFFFFFF}};
  for (const auto& [name, colour] : colours) {
    INFO(name);
    Page page(StandardPage, name);
    page.addRow("Anna", "Aubade", "3:42");
    const std::string line = linesWith(page.told(), "AddTable").at(0);
    CHECK(line.substr(line.rfind(' ') + 1) == std::to_string(colour));
  }
}

TEST_CASE("E137: Forty tracks on the insert are one table of forty rows, without a page number") {
  Page page(InsertTemplate);
  for (int track = 1; track <= 40; ++track) page.addRow("A", "T", "1:00");
  const Lines tables = linesWith(page.told(), "AddTable");
  CHECK(tables.size() == 40);
  CHECK_FALSE(tables.front().ends_with("appended"));
  CHECK(linesWith(page.told(), "FooterText").empty());
  for (std::size_t row = 1; row < tables.size(); ++row) CHECK(tables[row].ends_with(" appended"));
}

TEST_CASE("E138: A track of an unknown artist prints the word Unknown") {
  Page page(StandardPage);
  page.addRow("Unknown", "Unknown", "3:42");
  CHECK(linesWith(page.told(), "AddTable").at(0).find(" 01|Unknown|Unknown|3:42; ") != std::string::npos);
}

TEST_CASE("E139: The widths of the columns are not rounded, and have a point in every language") {
  Page page(InsertTemplate);
  // Of 12240 the seventeenth is a whole number, so another width shows it.
  page.prints.pageWidth = 11906;
  page.addRow("Anna", "Aubade", "3:42");
  CHECK(formatOf(linesWith(page.told(), "AddTable").at(0)) == "+595.3|+2976.5|+2976.5|>700.352941176471;");
  Page standard(StandardPage);
  standard.prints.pageWidth = 11906;
  standard.addRow("Anna", "Aubade", "3:42");
  CHECK(formatOf(linesWith(standard.told(), "AddTable").at(0)) ==
        "+626.631578947368|+3968.66666666667|+3968.66666666667|>700.352941176471;");
}

TEST_CASE("Marks of the control in a title go to it as they are") {
  Page page(StandardPage);
  page.addRow("Anna|Ben", "One; two", "3:42");
  CHECK(linesWith(page.told(), "AddTable").at(0).find(" 01|Anna|Ben|One; two|3:42; ") != std::string::npos);
}

TEST_CASE("The control fills the window whenever that changes, and nothing is told while it is minimized") {
  Page page(StandardPage);
  page.addRow("Anna", "Aubade", "3:42");
  frmPrint& form = page.show();
  page.prints.transcript.clear();
  form.placement = Placement{WindowState::Normal, 100, 50, 15000, 9000};
  form.placement = Placement{WindowState::Minimized, 0, 0, 2400, 600};
  form.placement = Placement{WindowState::Maximized, 0, 0, 28800, 16200};
  CHECK(page.prints.transcript == Lines{"Width = 15000", "Height = 9000", "Width = 28800", "Height = 16200"});
}

TEST_CASE("A list without rows gives a page without a table") {
  Page page(StandardPage);
  CHECK(linesWith(page.told(), "AddTable").empty());
  CHECK(page.told().back() == "Zoom = 100");
}

TEST_CASE("Closed, the page is gone, and the next one is made anew") {
  Page page(StandardPage);
  page.addRow("Anna", "Aubade", "3:42");
  auto& slot = page.program().forms().printing.frmPrint;
  slot->closeBox();
  CHECK_FALSE(slot.exists());
  page.mod().PrintStyle = InsertTemplate;
  CHECK(page.show().caption == std::string("Print - Audio CD Back Tray Insert Template"));
}

}  // namespace trackloom
