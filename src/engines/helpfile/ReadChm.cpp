#include "engines/helpfile/ByteReader.h"
#include "engines/helpfile/Chm.h"
#include "engines/helpfile/ChmFormat.h"

namespace trackloom::engines::helpfile {

namespace {

/// Gathers what the directory names, and never more of it than a whole help file may have.
class Gathering {
 public:
  explicit Gathering(std::string_view content) : content_(content) {}

  void add(std::string_view name, std::uint64_t offset, std::uint64_t length) {
    ByteReader reader(content_);
    reader.take(offset);
    const std::string_view bytes = reader.take(length);
    held_ += bytes.size();
    if (held_ > LargestHelpFile || files_.size() >= MostEntries) throw Damaged();
    files_.insert_or_assign(std::string(name), std::string(bytes));
  }

  ChmFiles take() { return std::move(files_); }

 private:
  std::string_view content_;
  std::size_t held_ = 0;
  ChmFiles files_;
};

/// Names of the user's and of the system's files begin with a slash, folders end in one.
void addEntry(ByteReader& entries, Gathering& files) {
  const std::string_view name = entries.take(entries.grouped());
  const std::uint64_t section = entries.grouped();
  const std::uint64_t offset = entries.grouped();
  const std::uint64_t length = entries.grouped();
  if (section == 0 && name.starts_with('/') && !name.ends_with('/')) files.add(name.substr(1), offset, length);
}

/// A chunk has a header at least.
void addChunk(std::string_view chunk, Gathering& files) {
  if (!chunk.starts_with("PMGL")) return;
  const std::uint32_t free = u32At(chunk, 4);
  if (free > chunk.size() - layout::ListingHeader) throw Damaged();
  ByteReader entries(chunk.substr(0, chunk.size() - free), layout::ListingHeader);
  while (!entries.atEnd()) addEntry(entries, files);
}

/// Where a file of the older header has its contents: behind the directory.
std::uint64_t contentOffset(std::string_view bytes, std::uint64_t behindDirectory) {
  constexpr std::uint32_t WithContentOffset = 3;
  if (u32At(bytes, 4) < WithContentOffset) return behindDirectory;
  return ByteReader(bytes, layout::ContentOffset).u64();
}

std::string_view from(std::string_view bytes, std::uint64_t offset) {
  if (offset > bytes.size()) throw Damaged();
  return bytes.substr(static_cast<std::size_t>(offset));
}

}  // namespace

ChmFiles readChm(std::string_view bytes) {
  if (bytes.size() > LargestHelpFile || !bytes.starts_with("ITSF")) throw Damaged();
  ByteReader places(bytes, layout::DirectoryOffset);
  const std::uint64_t directoryOffset = places.u64();
  const std::uint64_t directoryLength = places.u64();
  const std::string_view directory = ByteReader(from(bytes, directoryOffset)).take(directoryLength);
  if (!directory.starts_with("ITSP")) throw Damaged();
  const std::uint32_t chunkSize = u32At(directory, layout::ChunkSizeOffset);
  if (chunkSize < layout::ListingHeader) throw Damaged();
  Gathering files(from(bytes, contentOffset(bytes, directoryOffset + directoryLength)));
  ByteReader chunks(directory);
  chunks.take(u32At(directory, layout::DirectoryHeaderSizeOffset));
  for (std::uint32_t left = u32At(directory, layout::ChunkCountOffset); left > 0; --left)
    addChunk(chunks.take(chunkSize), files);
  return files.take();
}

}  // namespace trackloom::engines::helpfile
