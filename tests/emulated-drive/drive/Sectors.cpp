#include "Sectors.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

#include "Address.h"

namespace emulated {

namespace {

constexpr std::size_t packBytes = 18;

/// An open file for the length of one command.
class File {
 public:
  File(const std::filesystem::path& path, int flags) : fd_(::open(path.c_str(), flags | O_CLOEXEC, 0666)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (fd_ >= 0) ::close(fd_);
  }

  void put(const void* bytes, std::size_t size, std::int32_t slot, std::size_t slotSize) const {
    const ssize_t done = ::pwrite(fd_, bytes, size, offset(slot, slotSize));
    if (done != static_cast<ssize_t>(size)) throw std::system_error(errno, std::generic_category(), "emulated disc");
  }
  void get(void* bytes, std::size_t size, std::int32_t slot, std::size_t slotSize) const {
    if (fd_ >= 0 && ::pread(fd_, bytes, size, offset(slot, slotSize)) < 0)
      throw std::system_error(errno, std::generic_category(), "emulated disc");
  }

 private:
  static off_t offset(std::int32_t slot, std::size_t slotSize) {
    return static_cast<off_t>(slot + pregapBlocks) * static_cast<off_t>(slotSize);
  }
  int fd_;
};

/// ECMA-130, 14: twelve bytes of sync, then minute, second and frame in BCD, and the mode.
void putHeader(RawSector& sector, std::int32_t block, Kind kind) {
  const auto bcd = [](std::uint32_t number) { return static_cast<std::uint8_t>(number / 10 << 4U | number % 10); };
  const Msf at = msfOf(block);
  std::fill_n(sector.begin() + 1, 10, std::uint8_t{0xFF});
  sector[12] = bcd(at.minute);
  sector[13] = bcd(at.second);
  sector[14] = bcd(at.frame);
  sector[15] = static_cast<std::uint8_t>(kind);
}

}  // namespace

void Sectors::write(std::int32_t block, View content, const Mark& mark) const {
  const std::size_t size = bytesOf(mark.kind());
  const std::size_t count = content.size() / size;
  std::vector<RawSector> raw(count);
  for (std::size_t i = 0; i < count; ++i) {
    const bool data = mark.kind() != Kind::Audio;
    if (data) putHeader(raw[i], block + static_cast<std::int32_t>(i), mark.kind());
    std::copy_n(content.begin() + static_cast<std::ptrdiff_t>(i * size), size, raw[i].begin() + (data ? 16 : 0));
  }
  const std::vector<Mark> marks(count, mark);
  File(folder_ / "sectors", O_WRONLY | O_CREAT).put(raw.data(), count * rawBytes, block, rawBytes);
  File(folder_ / "marks", O_WRONLY | O_CREAT).put(marks.data(), count * sizeof(Mark), block, sizeof(Mark));
}

void Sectors::writeSilence(std::int32_t block, std::int32_t count, const Mark& mark) const {
  const std::size_t size = bytesOf(mark.kind());
  if (count > 0) write(block, Bytes(static_cast<std::size_t>(count) * size), mark);
}

RawSector Sectors::read(std::int32_t block) const {
  RawSector sector{};
  File(folder_ / "sectors", O_RDONLY).get(sector.data(), sector.size(), block, rawBytes);
  return sector;
}

Mark Sectors::mark(std::int32_t block) const {
  Mark mark;
  if (block >= -pregapBlocks) File(folder_ / "marks", O_RDONLY).get(&mark, sizeof(mark), block, sizeof(mark));
  return mark;
}

void Sectors::erase() const {
  for (const char* name : {"sectors", "marks", "text"}) std::filesystem::remove(folder_ / name);
}

void Sectors::writeText(View packs) const {
  std::ofstream out(folder_ / "text", std::ios::binary | std::ios::app);
  for (const std::uint8_t byte : packs) out.put(static_cast<char>(byte));
}

Bytes Sectors::text() const {
  std::ifstream in(folder_ / "text", std::ios::binary);
  Bytes packs{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  for (std::size_t at = packBytes; at + packBytes <= packs.size(); at += packBytes)
    if (std::equal(packs.begin(), packs.begin() + packBytes, packs.begin() + static_cast<std::ptrdiff_t>(at)))
      packs.resize(at);
  return packs;
}

}  // namespace emulated
