#include "desktop/PageLayout.h"

#include <QFontMetricsF>
#include <catch2/catch.hpp>
#include <cmath>

#include "desktop/Paper.h"
#include "desktop/TableText.h"
#include "fakes/TempFolder.h"

namespace trackloom {

namespace {

const QSizeF LetterPaper(12240, 15840);
const QSizeF A4Paper = twipsOf(Paper::A4);
const QSizeF A5Paper(8390, 11910);
constexpr double OwnMargin = 720;

PrintDocument listing(std::vector<std::string> rows, bool insert = false) {
  PrintDocument document;
  document.header = "Trackloom - mix";
  document.font.size = document.headerFont.size = 10;
  if (insert)
    document.margins = {2520, 1500, 2160};
  else
    document.footer = "|- Page %d -";
  document.tables.push_back({insert ? "+612|+3060|+3060|>720;" : "+644.21|+4080|+4080|>720;", "#|Artist|Title|Time;",
                             0xFF0000, std::move(rows)});
  return document;
}

std::vector<std::string> rows(int count) {
  std::vector<std::string> texts;
  for (int row = 1; row <= count; ++row)
    texts.push_back(std::to_string(row) + "|Artist " + std::to_string(row) + "|Title " + std::to_string(row) +
                    "|3:45;");
  return texts;
}

QStringList linesOf(const PrintedPage& page) {
  QStringList texts;
  for (const PrintedLine& line : page.lines) texts << line.text;
  return texts;
}

QStringList wordsOf(const PrintedPage& page) {
  QStringList texts;
  for (const PrintedWords& words : page.words) texts << words.text;
  return texts;
}

const PrintedLine& lineOf(const PrintedPage& page, const QString& text) {
  for (const PrintedLine& line : page.lines)
    if (line.text == text) return line;
  FAIL("No line " << text.toStdString());
  throw std::logic_error("unreachable");
}

/// Cells and lines lie between the margins, and no text is wider than its place.
void checkInside(const std::vector<PrintedPage>& pages, const QRectF& body) {
  const QRectF room = body.adjusted(-1, -1, 1, 1);
  for (const PrintedPage& page : pages) {
    for (const PrintedCell& cell : page.cells) CHECK(room.contains(cell.place));
    for (const PrintedLine& line : page.lines) {
      INFO(line.text.toStdString());
      CHECK(room.contains(line.place));
      CHECK(QFontMetricsF(line.font).horizontalAdvance(line.text) <= line.place.width() + 1);
    }
  }
}

QRectF bodyOn(const QSizeF& paper) {
  return {OwnMargin, OwnMargin, paper.width() - 2 * OwnMargin, paper.height() - 2 * OwnMargin};
}

}  // namespace

TEST_CASE("The columns of a table are read with their marks and decimal widths") {
  CHECK(columnsOf("+644.210526315789|+4080|>720;") == std::vector<TableColumn>{{Qt::AlignHCenter, 644.210526315789},
                                                                               {Qt::AlignHCenter, 4080},
                                                                               {Qt::AlignRight, 720}});
  CHECK(columnsOf("100|x;") == std::vector<TableColumn>{{Qt::AlignLeft, 100}, {Qt::AlignLeft, 0}});
}

TEST_CASE("The marks of a table within a text shift its cells, and nothing else does") {
  using Rows = std::vector<QStringList>;
  CHECK(rowsOf("01|Anna|Aubade|3:45;") == Rows{{"01", "Anna", "Aubade", "3:45"}});
  CHECK(rowsOf("01|Anna|Ben|Aubade|3:45;") == Rows{{"01", "Anna", "Ben", "Aubade", "3:45"}});
  CHECK(rowsOf("01|Anna|One; two|3:45;") == Rows{{"01", "Anna", "One"}, {" two", "3:45"}});
  CHECK(rowsOf("01|An\r\nna\t+>%d|\xE2\x80\xA8\xE2\x80\xA9\x01|3:45;") == Rows{{"01", "An  na +>%d", "   ", "3:45"}});
}

TEST_CASE(
    "A table stands at the left margin in its own widths, under the title, its header filled and its cells placed") {
  const auto pages = layOut(listing(rows(2)), LetterPaper);
  REQUIRE(pages.size() == 1);
  const PrintedPage& page = pages[0];
  REQUIRE(page.cells.size() == 12);
  const double lefts[] = {720, 1364.21, 5444.21, 9524.21};
  const double widths[] = {644.21, 4080, 4080, 720};
  for (std::size_t cell = 0; cell < page.cells.size(); ++cell) {
    CHECK(page.cells[cell].place.left() == Approx(lefts[cell % 4]));
    CHECK(page.cells[cell].place.width() == Approx(widths[cell % 4]));
    CHECK(page.cells[cell].fill == (cell < 4 ? QColor(0, 0, 255) : QColor()));
  }
  CHECK(page.cells[4].place.top() == Approx(page.cells[0].place.bottom()));
  CHECK(lineOf(page, "Trackloom - mix").place.top() == Approx(720));
  CHECK(lineOf(page, "Trackloom - mix").place.bottom() < page.cells[0].place.top());
  CHECK(lineOf(page, "Title 2").alignment == Qt::AlignHCenter);
  CHECK(lineOf(page, "3:45").alignment == Qt::AlignRight);
  CHECK(lineOf(page, "Time").alignment == Qt::AlignRight);
  CHECK(lineOf(page, "Artist").ink == QColor(Qt::white));
  CHECK(lineOf(page, "Artist 1").ink == QColor(Qt::black));
  CHECK(lineOf(page, "- Page 1 -").alignment == Qt::AlignHCenter);
  CHECK(lineOf(page, "- Page 1 -").place.bottom() <= 15840 - 720 + 1);
  CHECK(lineOf(page, "Artist 1").font.pixelSize() == 200);
}

TEST_CASE("99 rows run over several pages, the title and the page's number on each, the table's header on the first") {
  const auto pages = layOut(listing(rows(99)), LetterPaper);
  REQUIRE(pages.size() > 1);
  checkInside(pages, bodyOn(LetterPaper));
  int row = 0;
  for (std::size_t page = 0; page < pages.size(); ++page) {
    const QStringList lines = linesOf(pages[page]);
    CHECK(lines.count("Trackloom - mix") == 1);
    CHECK(lines.count("Artist") == (page == 0 ? 1 : 0));
    CHECK(lines.count(QString("- Page %1 -").arg(page + 1)) == 1);
    for (const QString& words : wordsOf(pages[page]))
      if (words.endsWith("3:45")) CHECK(words == QString("%1, Artist %1, Title %1, 3:45").arg(++row));
  }
  CHECK(row == 99);
}

TEST_CASE("The number of a page is counted in the footer alone") {
  PrintDocument document = listing(rows(1));
  document.header = "Page %d|middle|right";
  document.tables[0].rows = {"01|%d|%d|3:45;"};
  const auto pages = layOut(document, LetterPaper);
  const QStringList lines = linesOf(pages[0]);
  CHECK(lines.count("Page %d") == 1);
  CHECK(lines.count("%d") == 2);
  CHECK(lineOf(pages[0], "middle").alignment == Qt::AlignHCenter);
  CHECK(lineOf(pages[0], "right").alignment == Qt::AlignRight);
}

TEST_CASE("A long title wraps within its cell, also where it has no blank, and its row stays on one page") {
  std::vector<std::string> texts = rows(40);
  const std::string word(120, 'W');
  for (std::string& text : texts)
    text =
        "01|" + word + "|A title that is longer than its column, and then goes on in a second line and a third|3:45;";
  const auto pages = layOut(listing(texts), LetterPaper);
  checkInside(pages, bodyOn(LetterPaper));
  int rowsSeen = 0;
  for (const PrintedPage& page : pages)
    for (const QString& words : wordsOf(page))
      if (words.endsWith("3:45")) {
        ++rowsSeen;
        CHECK(words == "01, " + QString::fromStdString(word) +
                           ", A title that is longer than its column, and then goes on in a second line and a third, "
                           "3:45");
      }
  CHECK(rowsSeen == 40);
}

TEST_CASE("A title taller than a page flows on over the next ones, and nothing of it is lost") {
  QString title;
  for (int word = 1; word <= 4000; ++word) title += QString("word%1 ").arg(word);
  const auto pages = layOut(listing({"01|Anna|" + title.toStdString() + "|3:45;", "02|Ben|Dance|1:00;"}), LetterPaper);
  REQUIRE(pages.size() > 2);
  checkInside(pages, bodyOn(LetterPaper));
  QStringList printed;
  for (const PrintedPage& page : pages)
    for (const QString& line : linesOf(page))
      if (line.startsWith("word")) printed << line;
  CHECK(printed.join(' ') == title.trimmed());
  CHECK(wordsOf(pages.back()).contains("02, Ben, Dance, 1:00"));
}

TEST_CASE("The insert lies between the margins that were set, and keeps its widths and its place on every paper") {
  for (const QSizeF& paper : {LetterPaper, A4Paper, A5Paper}) {
    const auto pages = layOut(listing(rows(60), true), paper);
    REQUIRE(pages.size() > 1);
    for (const PrintedPage& page : pages) {
      CHECK(page.cells[0].place.left() == Approx(2520));
      CHECK(page.cells[1].place.width() == Approx(3060));
      CHECK(page.cells[3].place.right() == Approx(2520 + 7452));
      CHECK(page.lines[0].place.top() == Approx(1500));
      for (const PrintedCell& cell : page.cells) CHECK(cell.place.bottom() <= paper.height() - OwnMargin + 1);
    }
  }
  checkInside(layOut(listing(rows(60), true), LetterPaper), {2520, 1500, 7560, 15840 - 1500 - 720});
}

TEST_CASE("The standard page keeps its size on A4, and is smaller as a whole on paper where it would not fit") {
  const auto a4 = layOut(listing(rows(3)), A4Paper);
  CHECK(a4[0].cells[1].place.width() == Approx(4080));
  checkInside(a4, bodyOn(A4Paper));
  const auto a5 = layOut(listing(rows(3)), A5Paper);
  const double scale = (A5Paper.width() - 2 * OwnMargin) / 9524.21;
  CHECK(a5[0].cells[1].place.width() == Approx(4080 * scale));
  CHECK(lineOf(a5[0], "Artist 1").font.pixelSize() == std::lround(200 * scale));
  checkInside(a5, bodyOn(A5Paper));
}

TEST_CASE("A title as long as a name can be leaves the page to the table") {
  PrintDocument document = listing(rows(3));
  for (const std::size_t length : {std::size_t{255}, std::size_t{20000}}) {
    document.header = std::string(length, 'm');
    const auto pages = layOut(document, LetterPaper);
    CHECK(pages.size() == 1);
    CHECK(wordsOf(pages[0]).contains("3, Artist 3, Title 3, 3:45"));
    checkInside(pages, bodyOn(LetterPaper));
  }
}

TEST_CASE("A document without rows has one page, and one without a title begins with its table") {
  CHECK(layOut({}, LetterPaper).size() == 1);
  PrintDocument document = listing(rows(1));
  document.header.clear();
  CHECK(layOut(document, LetterPaper)[0].cells[0].place.top() == Approx(720));
}

TEST_CASE("The header's words are white on a dark colour and black on a light one") {
  CHECK(inkOn(QColor(0, 0, 255)) == QColor(Qt::white));
  CHECK(inkOn(QColor(0, 0, 0)) == QColor(Qt::white));
  for (const QColor& light : {QColor(255, 0, 0), QColor(0, 255, 0), QColor(255, 255, 0), QColor(255, 0, 255),
                              QColor(0, 255, 255), QColor(255, 255, 255)})
    CHECK(inkOn(light) == QColor(Qt::black));
}

TEST_CASE("Titles that are written from right to left stay in their cells") {
  const auto pages =
      layOut(listing({"01|فيروز|نسم علينا الهوا من مفرق الوادي يا هوا دخل الهوا خدني على بلادي|3:45;"}), LetterPaper);
  checkInside(pages, bodyOn(LetterPaper));
  CHECK(lineOf(pages[0], "فيروز").direction == Qt::RightToLeft);
}

TEST_CASE("The paper is Letter until the user chooses another, which is kept beside the program") {
  const fakes::TempFolder folder;
  const HostPath home(folder.path());
  CHECK(loadPaper(home) == Paper::Letter);
  savePaper(home, Paper::A4);
  CHECK(loadPaper(home) == Paper::A4);
  savePaper(home, Paper::Letter);
  CHECK(loadPaper(home) == Paper::Letter);
  folder.write("Printing.ini", "[page]\npaper = Tabloid\n");
  CHECK(loadPaper(home) == Paper::Letter);
  // Where it cannot be kept nothing fails.
  savePaper(HostPath(folder / "nowhere"), Paper::A4);
  CHECK(twipsOf(Paper::Letter) == LetterPaper);
}

}  // namespace trackloom
