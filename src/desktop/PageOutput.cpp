#include "desktop/PageOutput.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <algorithm>

#include "desktop/PageLayout.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

constexpr int TwipsPerInch = 1440;
constexpr double TwipsPerPoint = 20;

}  // namespace

std::string pdfOf(const PrintDocument& document, Paper paper) {
  QBuffer file;
  file.open(QIODevice::WriteOnly);
  QPdfWriter writer(&file);
  writer.setTitle(shown(document.header));
  writer.setCreator("Trackloom");
  writer.setPageSize(pageSize(paper));
  writer.setPageMargins(QMarginsF());
  writer.setResolution(TwipsPerInch);
  QPainter painter(&writer);
  bool first = true;
  for (const PrintedPage& page : layOut(document, twipsOf(paper))) {
    if (!std::exchange(first, false)) writer.newPage();
    page.paint(painter);
  }
  painter.end();
  return file.data().toStdString();
}

bool printOn(const PrintDocument& document, QPrinter& printer) {
  QPainter painter;
  if (!painter.begin(&printer)) return false;
  const std::vector<PrintedPage> pages = layOut(document, printer.paperRect(QPrinter::Point).size() * TwipsPerPoint);
  const int last = static_cast<int>(pages.size());
  // 0 stands for all pages.
  const int from = std::max(printer.fromPage(), 1);
  const int to = printer.toPage() == 0 ? last : std::min(printer.toPage(), last);
  painter.scale(printer.resolution() / static_cast<double>(TwipsPerInch),
                printer.resolution() / static_cast<double>(TwipsPerInch));
  for (int page = from; page <= to; ++page) {
    if (page > from) printer.newPage();
    pages[static_cast<std::size_t>(page) - 1].paint(painter);
  }
  return painter.end();
}

}  // namespace trackloom
