#include "engines/helpfile/HelpBookFile.h"

#include <algorithm>
#include <system_error>

#include "engines/helpfile/ByteReader.h"
#include "engines/helpfile/ChmFormat.h"
#include "engines/helpfile/Markup.h"
#include "runtime/Aside.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::helpfile {

namespace {

using SystemTexts = std::map<std::uint16_t, std::string>;

const std::string& fileNamed(const ChmFiles& files, const std::string& name) {
  static const std::string nothing;
  const auto found = files.find(name);
  return found == files.end() ? nothing : found->second;
}

/// The file that a place is in.
std::string fileOf(const std::string& place) {
  return place.substr(0, place.find('#'));
}

SystemTexts systemTexts(std::string_view bytes) {
  SystemTexts texts;
  ByteReader reader(bytes);
  reader.u32();
  while (!reader.atEnd()) {
    const std::uint16_t code = reader.u16();
    const std::string_view value = reader.take(reader.u16());
    texts[code] = value.substr(0, std::min(value.find('\0'), LongestText));
  }
  return texts;
}

std::map<std::int32_t, std::string> topicsOf(const ChmFiles& files) {
  std::map<std::int32_t, std::string> topics;
  const std::string& bytes = fileNamed(files, "#IVB");
  if (bytes.empty()) return topics;
  ByteReader reader(bytes);
  ByteReader rows(reader.take(4 + std::uint64_t{u32At(bytes, 0)}), 4);
  while (!rows.atEnd()) {
    if (topics.size() >= MostEntries) throw Damaged();
    const auto number = static_cast<std::int32_t>(rows.u32());
    topics[number] = textAt(fileNamed(files, "#STRINGS"), rows.u32());
  }
  return topics;
}

std::vector<std::string> windowsOf(const ChmFiles& files) {
  std::vector<std::string> windows;
  const std::string& bytes = fileNamed(files, "#WINDOWS");
  if (bytes.empty()) return windows;
  ByteReader reader(bytes);
  const std::uint32_t count = reader.u32();
  const std::uint32_t size = reader.u32();
  if (size < layout::WindowRecord || count > MostEntries) throw Damaged();
  for (std::uint32_t window = 0; window < count; ++window)
    windows.emplace_back(textAt(fileNamed(files, "#STRINGS"), u32At(reader.take(size), layout::WindowName)));
  return windows;
}

bool isPage(const std::string& file) {
  return file.ends_with(".htm") || file.ends_with(".html");
}

std::string titleOf(std::string_view html) {
  while (const auto piece = takePiece(html))
    if (piece->isMark && markName(piece->text) == "title") {
      const auto title = takePiece(html);
      return title && !title->isMark ? withoutEntities(title->text) : "";
    }
  return "";
}

std::vector<HelpBook::Page> pagesOf(const ChmFiles& files) {
  std::vector<HelpBook::Page> pages;
  for (const auto& [name, bytes] : files)
    if (isPage(name)) pages.push_back({name, titleOf(bytes), plainText(bytes)});
  return pages;
}

}  // namespace

std::string plainText(std::string_view html) {
  std::string text;
  bool hidden = false;
  while (const auto piece = takePiece(html)) {
    if (piece->isMark) {
      const std::string name = markName(piece->text);
      hidden = name == "head" || (hidden && name != "/head");
      text += ' ';
    } else if (!hidden) {
      text += withoutEntities(piece->text);
    }
  }
  std::string even;
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\n' || c == '\r' || c == '\t';
    if (!blank)
      even += c;
    else if (!even.empty() && even.back() != ' ')
      even += ' ';
  }
  return even;
}

HelpBook helpBook(std::string_view bytes) {
  HelpBook book;
  book.files = readChm(bytes);
  std::erase_if(book.files, [](const auto& file) { return isPage(file.first) && !isShowable(file.second); });
  SystemTexts texts = systemTexts(fileNamed(book.files, "#SYSTEM"));
  book.title = texts[system::Title];
  book.firstPage = texts[system::FirstPage];
  if (!book.files.contains(fileOf(book.firstPage))) throw Damaged();
  book.windows = windowsOf(book.files);
  book.topics = topicsOf(book.files);
  book.contents = siteMap(fileNamed(book.files, texts[system::Contents]));
  book.index = siteMap(fileNamed(book.files, texts[system::Index]));
  book.pages = pagesOf(book.files);
  return book;
}

std::shared_ptr<const HelpBook> readHelpBook(const HostPath& path) {
  try {
    return std::make_shared<const HelpBook>(helpBook(ReadStart(path, LargestHelpFile + 1)));
  } catch (const Damaged&) {
    return nullptr;
  } catch (const RuntimeError&) {
    return nullptr;
  }
}

HelpBookReader patientReader(Patience& patience) {
  const auto aside = std::make_shared<Aside>([&patience](const Aside::Wait& wait) { patience.until(wait); });
  return [aside](const HostPath& path) {
    try {
      return (*aside)([path] { return readHelpBook(path); });
    } catch (const std::system_error&) {
      return readHelpBook(path);
    }
  };
}

}  // namespace trackloom::engines::helpfile
