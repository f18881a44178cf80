#include "desktop/Paper.h"

#include "runtime/Files.h"
#include "runtime/IniFile.h"
#include "runtime/Statements.h"
#include "runtime/Text.h"

namespace trackloom {

namespace {

constexpr const char* FileName = "Printing.ini";
constexpr double TwipsPerPoint = 20;

HostPath fileIn(const HostPath& folder) {
  return HostPath(EnsureTrailingSep(folder.text) + FileName);
}

}  // namespace

QPageSize pageSize(Paper paper) {
  return QPageSize(paper == Paper::A4 ? QPageSize::A4 : QPageSize::Letter);
}

QSizeF twipsOf(Paper paper) {
  return pageSize(paper).size(QPageSize::Point) * TwipsPerPoint;
}

Paper loadPaper(const HostPath& folder) {
  const auto file = IniFile::load(fileIn(folder));
  const std::string name = file ? file->value("page", "paper").value_or("") : "";
  return UCase(name) == "A4" ? Paper::A4 : Paper::Letter;
}

void savePaper(const HostPath& folder, Paper paper) {
  IniWriter file;
  file.comment("What listings are printed on: Letter or A4.");
  file.section("page").entry("paper", std::string_view(paper == Paper::A4 ? "A4" : "Letter"));
  skipOnError([&] { ReplaceFile(fileIn(folder), file.text()); });
}

}  // namespace trackloom
