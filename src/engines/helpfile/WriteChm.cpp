#include <algorithm>
#include <stdexcept>
#include <vector>

#include "engines/helpfile/Bytes.h"
#include "engines/helpfile/Chm.h"
#include "engines/helpfile/ChmFormat.h"

namespace trackloom::engines::helpfile {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t ChunkSize = 0x1000;
constexpr std::uint32_t None = 0xFFFFFFFF;
constexpr std::uint32_t English = 0x409;
/// Every fifth entry of a chunk has its place noted at the chunk's end, for readers that search by halves.
constexpr std::uint32_t Density = 2;
constexpr std::size_t EntriesPerNote = 1 + (1U << Density);

constexpr auto FileIds =
    "\x10\xfd\x01\x7c\xaa\x7b\xd0\x11\x9e\x0c\x00\xa0\xc9\x22\xe6\xec"
    "\x11\xfd\x01\x7c\xaa\x7b\xd0\x11\x9e\x0c\x00\xa0\xc9\x22\xe6\xec"sv;
constexpr auto DirectoryId = "\x6a\x92\x02\x5d\x2e\x21\xd0\x11\x9d\xf9\x00\xa0\xc9\x22\xe6\xec"sv;

std::string lowered(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

/// The file that names the kinds of content: one, which is not compressed.
std::string sectionNames() {
  Bytes names;
  constexpr std::string_view only = "Uncompressed";
  names.u16(4 + only.size()).u16(1).u16(only.size());
  for (const char c : only) names.u16(static_cast<unsigned char>(c));
  return names.u16(0).text;
}

struct Entry {
  std::string name;
  std::string bytes;
};

/// All that the directory names, in its order, which is blind to case.
std::vector<Entry> entriesOf(const ChmFiles& files) {
  std::vector<Entry> entries{{"/", ""}, {"::DataSpace/NameList", sectionNames()}};
  for (const auto& [name, bytes] : files) entries.push_back({"/" + name, bytes});
  std::sort(entries.begin(), entries.end(),
            [](const Entry& a, const Entry& b) { return lowered(a.name) < lowered(b.name); });
  return entries;
}

/// A chunk of the directory that grows until it is full.
class Chunk {
 public:
  explicit Chunk(std::size_t header) : room_(ChunkSize - header) {}

  bool takes(const std::string& entry) const { return entries_.size() + entry.size() + notes(count_ + 1) <= room_; }
  void add(const std::string& name, const std::string& entry) {
    if (!takes(entry)) throw std::length_error("the help file's directory has no room for " + name);
    if (count_ == 0) first_ = name;
    if (count_ > 0 && count_ % EntriesPerNote == 0) places_.push_back(entries_.size());
    entries_ += entry;
    ++count_;
  }

  const std::string& firstName() const { return first_; }
  std::size_t free() const { return room_ - entries_.size(); }

  /// All but the header: the entries, and from the end on their number and the places noted.
  std::string body() const {
    std::string end;
    for (auto place = places_.rbegin(); place != places_.rend(); ++place) end += Bytes().u16(*place).text;
    end += Bytes().u16(count_).text;
    return entries_ + std::string(room_ - entries_.size() - end.size(), '\0') + end;
  }

 private:
  static std::size_t notes(std::size_t count) { return 2 + 2 * ((count - 1) / EntriesPerNote); }

  std::size_t room_;
  std::string first_;
  std::string entries_;
  std::vector<std::size_t> places_;
  std::size_t count_ = 0;
};

std::string named(const std::string& name) {
  return Bytes().grouped(name.size()).add(name).text;
}

std::vector<Chunk> listing(const std::vector<Entry>& entries) {
  std::vector<Chunk> chunks(1, Chunk(layout::ListingHeader));
  std::uint64_t offset = 0;
  for (const Entry& entry : entries) {
    const std::string row = Bytes().add(named(entry.name)).grouped(0).grouped(offset).grouped(entry.bytes.size()).text;
    if (!chunks.back().takes(row)) chunks.emplace_back(layout::ListingHeader);
    chunks.back().add(entry.name, row);
    offset += entry.bytes.size();
  }
  return chunks;
}

std::string listingBytes(const std::vector<Chunk>& chunks) {
  Bytes bytes;
  for (std::size_t i = 0; i < chunks.size(); ++i) {
    bytes.add("PMGL").u32(chunks[i].free()).u32(0);
    bytes.u32(i == 0 ? None : i - 1).u32(i + 1 == chunks.size() ? None : i + 1).add(chunks[i].body());
  }
  return bytes.text;
}

/// One chunk that tells with which name each of the others begins; nothing where there is only one.
std::string indexBytes(const std::vector<Chunk>& chunks) {
  if (chunks.size() == 1) return {};
  Chunk index(layout::IndexHeader);
  for (std::size_t i = 0; i < chunks.size(); ++i)
    index.add(chunks[i].firstName(), Bytes().add(named(chunks[i].firstName())).grouped(i).text);
  return Bytes().add("PMGI").u32(index.free()).add(index.body()).text;
}

std::string directoryBytes(const std::vector<Entry>& entries) {
  const std::vector<Chunk> chunks = listing(entries);
  const std::string index = indexBytes(chunks);
  const bool indexed = !index.empty();
  Bytes directory;
  directory.add("ITSP").u32(1).u32(layout::DirectoryHeaderSize).u32(10).u32(ChunkSize).u32(Density);
  directory.u32(indexed ? 2 : 1).u32(indexed ? chunks.size() : None).u32(0).u32(chunks.size() - 1).u32(None);
  directory.u32(chunks.size() + (indexed ? 1 : 0)).u32(English).add(DirectoryId);
  directory.u32(layout::DirectoryHeaderSize).u32(None).u32(None).u32(None);
  return directory.add(listingBytes(chunks)).add(index).text;
}

}  // namespace

std::string chmBytes(const ChmFiles& files) {
  constexpr std::size_t SizeSection = 0x18;
  const std::vector<Entry> entries = entriesOf(files);
  const std::string directory = directoryBytes(entries);
  const std::size_t start = layout::HeaderSize + SizeSection;
  std::size_t whole = start + directory.size();
  for (const Entry& entry : entries) whole += entry.bytes.size();
  Bytes file;
  file.add("ITSF").u32(3).u32(layout::HeaderSize).u32(1).u32(0).u32(English).add(FileIds);
  file.u64(layout::HeaderSize).u64(SizeSection).u64(start).u64(directory.size()).u64(start + directory.size());
  file.u32(0x1FE).u32(0).u64(whole).u64(0);
  file.add(directory);
  for (const Entry& entry : entries) file.add(entry.bytes);
  return file.text;
}

}  // namespace trackloom::engines::helpfile
