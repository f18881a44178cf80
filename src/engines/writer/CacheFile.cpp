#include "engines/writer/CacheFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "engines/ground/EngineError.h"
#include "engines/ground/OpenFiles.h"

namespace trackloom::engines::writer {

namespace {

EngineError cacheError(const std::string& words, int systemError) {
  return {ErrorKind::ReadBuffer, 0, words + ": " + systemWords(systemError)};
}

/// Not every file system makes nameless files, so a name that is gone at once is the second choice.
FileDescriptor namelessFile(const HostPath& folder) {
  std::error_code ignored;
  std::filesystem::create_directories(folder.text, ignored);
  FileDescriptor file(::open(folder.text.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (file) return file;
  std::string name = EnsureTrailingSep(folder.text) + "track-XXXXXX";
  file = FileDescriptor(::mkostemp(name.data(), O_CLOEXEC));
  if (!file) throw cacheError("no cache can be made in " + folder.text, errno);
  ::unlink(name.c_str());
  return file;
}

}  // namespace

CacheFile::CacheFile(const HostPath& folder, std::int64_t most) : file_(namelessFile(folder)) {
  if (const int error = ::posix_fallocate(file_.get(), 0, most); error != 0)
    throw cacheError("the cache has no room for " + std::to_string(most) + " bytes in " + folder.text, error);
}

void CacheFile::fill(SectorSource& source, std::int64_t bytes, const std::function<void(std::int64_t)>& progress) {
  constexpr std::int64_t step = std::int64_t{128} * 2352;
  std::vector<std::byte> buffer(static_cast<std::size_t>(std::min(bytes, step)));
  for (std::int64_t done = 0; done < bytes;) {
    const std::span<std::byte> part(buffer.data(), static_cast<std::size_t>(std::min(bytes - done, step)));
    source.read(part);
    if (writeAt(file_, part, filled_ + done) != part.size()) throw cacheError("the cache cannot be written", errno);
    done += static_cast<std::int64_t>(part.size());
    progress(done);
  }
  filled_ += bytes;
}

void CacheFile::read(std::span<std::byte> sectors) {
  if (readAt(file_, sectors, position_) != sectors.size())
    throw cacheError("the cache cannot be read back", errno != 0 ? errno : EIO);
  position_ += std::ssize(sectors);
}

}  // namespace trackloom::engines::writer
