#include <utility>

#include "engines/helpfile/Bytes.h"
#include "engines/helpfile/ChmFormat.h"
#include "engines/helpfile/HelpBookFile.h"
#include "engines/helpfile/HelpSources.h"
#include "engines/helpfile/Markup.h"

namespace trackloom::engines::helpfile {

namespace {

constexpr const char* ContentsFile = "Trackloom.hhc";
constexpr const char* IndexFile = "Trackloom.hhk";
constexpr std::uint32_t English = 0x409;

/// The file "#STRINGS": texts that other files name by their place in it.
class Strings {
 public:
  std::uint32_t place(const std::string& text) {
    const auto start = static_cast<std::uint32_t>(bytes_.size());
    bytes_ += text + '\0';
    return start;
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_ = std::string(1, '\0');
};

Bytes& addText(Bytes& system, std::uint16_t code, const std::string& text) {
  return system.u16(code).u16(text.size() + 1).add(text).zeros(1);
}

/// Names and the first page; of the moments that other compilers note there are none.
std::string systemFile(const HelpBook& book) {
  constexpr std::size_t LocaleRecord = 0x24;
  Bytes system;
  system.u32(3);
  addText(system, system::Contents, ContentsFile);
  addText(system, system::Index, IndexFile);
  addText(system, system::FirstPage, book.firstPage);
  addText(system, system::Title, book.title);
  system.u16(system::Locale).u16(LocaleRecord).u32(English).zeros(LocaleRecord - 4);
  if (!book.windows.empty()) addText(system, system::Window, book.windows.front());
  return addText(system, system::Name, "trackloom").text;
}

/// A window with contents, index, and the buttons of its bar: hide, back, forward, home, print, options.
std::string windowRecord(const HelpBook& book, const std::string& window, Strings& strings) {
  constexpr std::uint32_t Members = 0x536;
  constexpr std::uint32_t ThreePanes = 0x63520;
  constexpr std::uint32_t PaneWidth = 240;
  constexpr std::uint32_t Buttons = 0x387E;
  const std::uint32_t firstPage = strings.place(book.firstPage);
  Bytes record;
  record.u32(layout::WindowRecord).u32(0).u32(strings.place(window)).u32(Members).u32(ThreePanes);
  record.u32(strings.place(book.title)).zeros(0x4C - record.text.size());
  record.u32(PaneWidth).zeros(0x60 - 0x50);
  record.u32(strings.place(ContentsFile)).u32(strings.place(IndexFile)).u32(firstPage).u32(firstPage).u32(Buttons);
  return record.zeros(layout::WindowRecord - record.text.size()).text;
}

std::string windowsFile(const HelpBook& book, Strings& strings) {
  Bytes windows;
  windows.u32(book.windows.size()).u32(layout::WindowRecord);
  for (const std::string& window : book.windows) windows.add(windowRecord(book, window, strings));
  return windows.text;
}

/// The file "#IVB": which page belongs to a topic's number.
std::string topicsFile(const HelpBook& book, Strings& strings) {
  constexpr std::size_t Row = 8;
  Bytes topics;
  topics.u32(book.topics.size() * Row);
  for (const auto& [number, place] : book.topics)
    topics.u32(static_cast<std::uint32_t>(number)).u32(strings.place(place));
  return topics.text;
}

}  // namespace

std::string helpFileBytes(const HelpBook& book) {
  Strings strings;
  ChmFiles files = book.files;
  files["#SYSTEM"] = systemFile(book);
  files["#WINDOWS"] = windowsFile(book, strings);
  files["#IVB"] = topicsFile(book, strings);
  files["#STRINGS"] = strings.bytes();
  files[ContentsFile] = siteMapText(book.contents);
  files[IndexFile] = siteMapText(book.index);
  return chmBytes(files);
}

}  // namespace trackloom::engines::helpfile
