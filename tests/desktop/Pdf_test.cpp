#include <QImage>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <catch2/catch.hpp>

#include "desktop/PageOutput.h"
#include "fakes/TempFolder.h"

namespace trackloom {

namespace {

/// A PDF file as other programs read it.
class Pdf {
 public:
  explicit Pdf(const std::string& bytes) { folder_.write("x.pdf", bytes); }

  std::string file() const { return folder_ / "x.pdf"; }
  QString ask(const QString& program, const QStringList& arguments) const {
    QProcess process;
    process.start(program, arguments);
    REQUIRE(process.waitForFinished());
    INFO(process.readAllStandardError().toStdString());
    REQUIRE(process.exitCode() == 0);
    return QString::fromUtf8(process.readAllStandardOutput());
  }
  /// The text of one page as it stands there.
  QString text(int page) const {
    const QString number = QString::number(page);
    return ask("pdftotext", {"-layout", "-f", number, "-l", number, QString::fromStdString(file()), "-"});
  }
  QString info() const { return ask("pdfinfo", {QString::fromStdString(file())}); }
  QString fonts() const { return ask("pdffonts", {QString::fromStdString(file())}); }
  /// A page in so many pixels to the inch.
  QImage picture(int page, int resolution) const {
    const QString number = QString::number(page);
    const QString stem = QString::fromStdString(folder_ / "page");
    ask("pdftoppm", {"-png", "-singlefile", "-r", QString::number(resolution), "-f", number, "-l", number,
                     QString::fromStdString(file()), stem});
    return QImage(stem + ".png");
  }

 private:
  fakes::TempFolder folder_;
};

PrintDocument listing(int rows, std::int32_t colour = 0xFF0000) {
  PrintDocument document;
  document.header = "Trackloom - mix";
  document.footer = "|- Page %d -";
  DocumentTable table{"+644.21|+4080|+4080|>720;", "#|Artist|Title|Time;", colour, {}};
  for (int row = 1; row <= rows; ++row) {
    const std::string number = std::to_string(row);
    table.rows.push_back(number + "|Artist " + number + "|Title " + number + "|3:45;");
  }
  document.tables.push_back(table);
  return document;
}

PrintDocument insert(int rows) {
  PrintDocument document = listing(rows);
  document.footer.clear();
  document.margins = {2520, 1500, 2160};
  document.tables[0].format = "+612|+3060|+3060|>720;";
  return document;
}

/// The columns of the picture that have this colour in a row of pixels: the first and the last.
std::pair<int, int> spanOf(const QImage& picture, int y, QRgb colour) {
  std::pair<int, int> span{-1, -1};
  for (int x = 0; x < picture.width(); ++x)
    if (picture.pixel(x, y) == colour) span = {span.first < 0 ? x : span.first, x};
  return span;
}

int firstRowOf(const QImage& picture, QRgb colour, int x) {
  for (int y = 0; y < picture.height(); ++y)
    if (picture.pixel(x, y) == colour) return y;
  return -1;
}

}  // namespace

TEST_CASE("The listing is a PDF file of Letter pages with the title, the rows and the page's number as text") {
  const Pdf pdf(pdfOf(listing(99), Paper::Letter));
  CHECK(pdf.info().contains("Page size:       612 x 792 pts (letter)"));
  CHECK(pdf.info().contains("Title:           Trackloom - mix"));
  CHECK(pdf.text(1).contains(QRegularExpression("1 +Artist 1 +Title 1 +3:45")));
  CHECK(pdf.text(1).contains(QRegularExpression("# +Artist +Title +Time")));
  const int pages = QRegularExpression("Pages: +(\\d+)").match(pdf.info()).captured(1).toInt();
  REQUIRE(pages > 1);
  CHECK_FALSE(pdf.text(2).contains(QRegularExpression("Artist +Title +Time")));
  CHECK(pdf.text(pages).contains(QRegularExpression("99 +Artist 99 +Title 99 +3:45")));
  for (int page = 1; page <= pages; ++page) {
    CHECK(pdf.text(page).contains("Trackloom - mix"));
    CHECK(pdf.text(page).contains(QString("- Page %1 -").arg(page)));
  }
}

TEST_CASE("Fonts are embedded, and the listing's own font is among them") {
  PrintDocument document = listing(3);
  document.font.name = document.headerFont.name = "DejaVu Serif";
  const QString fonts = Pdf(pdfOf(document, Paper::Letter)).fonts();
  const QStringList lines = fonts.split('\n', Qt::SkipEmptyParts).mid(2);
  REQUIRE(!lines.isEmpty());
  for (const QString& line : lines) CHECK(line.contains(QRegularExpression(" yes +(yes|no) +(yes|no) +\\d")));
  CHECK(fonts.contains("DejaVuSerif"));
}

TEST_CASE("The header has its colour between the edges of its columns, to the pixel") {
  const QImage page = Pdf(pdfOf(listing(3), Paper::Letter)).picture(1, 144);
  const QRgb blue = qRgb(0, 0, 255);
  CHECK(page.size() == QSize(1224, 1584));
  // Of the first column, two pixels within its left frame.
  const int top = firstRowOf(page, blue, 76);
  REQUIRE(top > 72);
  const auto [left, right] = spanOf(page, top + 2, blue);
  // A tenth of a twip is a pixel: the table lies from 720 to 10244.21.
  CHECK(std::abs(left - 72) <= 2);
  CHECK(std::abs(right - 1024) <= 2);
}

TEST_CASE("The insert lies on its card: from 2520 twips at the left and below 1500 from the top, without a footer") {
  const Pdf pdf(pdfOf(insert(40), Paper::Letter));
  const QImage page = pdf.picture(1, 144);
  const QRgb blue = qRgb(0, 0, 255);
  const int top = firstRowOf(page, blue, 256);
  const auto [left, right] = spanOf(page, top + 2, blue);
  CHECK(top > 150);
  CHECK(std::abs(left - 252) <= 2);
  CHECK(std::abs(right - 997) <= 2);
  CHECK_FALSE(pdf.text(1).contains("Page"));
  CHECK(pdf.text(1).contains(QRegularExpression("40 +Artist 40 +Title 40 +3:45")));
}

TEST_CASE("On A4 the insert stays where it was") {
  const Pdf pdf(pdfOf(insert(3), Paper::A4));
  CHECK(pdf.info().contains("(A4)"));
  const QImage page = pdf.picture(1, 144);
  const int top = firstRowOf(page, qRgb(0, 0, 255), 256);
  const auto [left, right] = spanOf(page, top + 2, qRgb(0, 0, 255));
  CHECK(std::abs(left - 252) <= 2);
  CHECK(std::abs(right - 997) <= 2);
}

TEST_CASE("The words of a dark header are white, those of a light one black") {
  for (const auto& [colour, ink] : {std::pair{0xFF0000, qRgb(255, 255, 255)}, std::pair{0x00FFFF, qRgb(0, 0, 0)}}) {
    const QImage page = Pdf(pdfOf(listing(3, colour), Paper::Letter)).picture(1, 288);
    const QRgb fill = qRgb(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
    const int top = firstRowOf(page, fill, 152);
    int inked = 0;
    // Within the frames of the header, beside and below which the page is white.
    for (int y = top; y < top + 40; ++y)
      for (int x = 150; x < 2040; ++x) inked += page.pixel(x, y) == ink ? 1 : 0;
    CHECK(inked > 50);
  }
}

TEST_CASE("Titles in other alphabets are text of the file") {
  PrintDocument document = listing(0);
  document.tables[0].rows = {"01|Ария|Ночь короче дня|3:45;", "02|Χάρις|Ο δρόμος|1:00;", "03|فيروز|نسم علينا|2:00;",
                             "04|夜|さくら|2:00;", "05|Anna|🎵 Aubade 🎸|2:00;"};
  const Pdf pdf(pdfOf(document, Paper::Letter));
  const QString text = pdf.text(1);
  CHECK(text.contains("Ночь короче дня"));
  CHECK(text.contains("Ο δρόμος"));
  CHECK(text.contains(QRegularExpression("05 .*Aubade")));
  CHECK(text.contains(QRegularExpression("04 .*2:00")));
}

TEST_CASE("A printer prints the pages that its user has chosen") {
  fakes::TempFolder folder;
  const auto pagesOf = [&](int from, int to) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFileName(QString::fromStdString(folder / "printed.pdf"));
    printer.setPageSize(pageSize(Paper::Letter));
    printer.setFullPage(true);
    if (from > 0) printer.setFromTo(from, to);
    CHECK(printOn(listing(99), printer));
    return Pdf(folder.read("printed.pdf"));
  };
  CHECK(pagesOf(0, 0).text(1).contains("- Page 1 -"));
  const Pdf second = pagesOf(2, 2);
  CHECK(second.text(1).contains("- Page 2 -"));
  CHECK(second.info().contains(QRegularExpression("Pages: +1\n")));
  CHECK(second.text(1).contains("Trackloom - mix"));
  const QImage page = pagesOf(1, 1).picture(1, 144);
  const int top = firstRowOf(page, qRgb(0, 0, 255), 76);
  const auto [left, right] = spanOf(page, top + 2, qRgb(0, 0, 255));
  CHECK(std::abs(left - 72) <= 2);
  CHECK(std::abs(right - 1024) <= 2);
}

}  // namespace trackloom
