#include "engines/writer/FileContent.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>
#include <utility>

#include "runtime/RuntimeError.h"

/// The library's own layout of a stream, which it shows to C alone because of the first member's name there.
struct iso_stream {
  IsoStreamIface* calls;
  int references;
  void* data;
};

namespace trackloom::engines::writer {

namespace {

constexpr std::size_t bufferBytes = std::size_t{1} << 20;

std::string reason(int systemError) {
  return std::generic_category().message(systemError);
}

FileDescriptor opened(const HostPath& path) {
  return FileDescriptor(::open(path.text.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

}  // namespace

ReadingState::ReadingState() : calls(FileContent::calls()) {}

void ReadingState::fail(const std::string& words) {
  const std::lock_guard lock(mutex_);
  if (failure_.empty()) failure_ = words;
}

std::string ReadingState::failure() const {
  const std::lock_guard lock(mutex_);
  return failure_;
}

FileContent::FileContent(HostPath source, std::size_t index, ReadingState& state)
    : source_(std::move(source)), index_(index), state_(state) {
  const FileDescriptor file = opened(source_);
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0)
    throw RuntimeError(RuntimeError::FileNotFound, source_.text + " cannot be read: " + reason(errno));
  if (!S_ISREG(status.st_mode))
    throw RuntimeError(RuntimeError::BadFileName, source_.text + " cannot be read: it is no regular file");
  size_ = status.st_size;
  modified_ = status.st_mtime;
}

FileContent& FileContent::of(IsoStream* stream) {
  return *static_cast<FileContent*>(stream->data);
}

IsoStream* FileContent::newStream() {
  // The library frees the stream itself, with free().
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  auto* stream = static_cast<IsoStream*>(std::calloc(1, sizeof(IsoStream)));
  if (stream == nullptr) throw std::bad_alloc();
  stream->calls = &state_.calls;
  stream->references = 1;
  stream->data = this;
  return stream;
}

IsoStreamIface FileContent::calls() {
  IsoStreamIface calls{};
  calls.version = 1;
  std::memcpy(calls.type, "user", sizeof calls.type);
  calls.open = [](IsoStream* stream) { return of(stream).open(); };
  calls.close = [](IsoStream* stream) { return of(stream).close(); };
  calls.get_size = [](IsoStream* stream) { return static_cast<off_t>(of(stream).size_); };
  calls.read = [](IsoStream* stream, void* target, std::size_t count) { return of(stream).read(target, count); };
  calls.is_repeatable = [](IsoStream*) { return 1; };
  calls.get_id = [](IsoStream* stream, unsigned* system, dev_t* device, ino_t* node) {
    constexpr unsigned ours = 0x54CD;
    *system = ours;
    *device = 0;
    *node = of(stream).index_ + 1;
  };
  calls.free = [](IsoStream*) {};
  calls.update_size = [](IsoStream*) { return 1; };
  return calls;
}

int FileContent::failed(const std::string& what, int systemError) {
  state_.fail(source_.text + " " + what + (systemError != 0 ? ": " + reason(systemError) : ""));
  return static_cast<int>(ISO_FILE_READ_ERROR);
}

int FileContent::open() {
  file_ = opened(source_);
  struct stat status {};
  if (!file_ || ::fstat(file_.get(), &status) != 0) return failed("cannot be read", errno);
  if (!S_ISREG(status.st_mode) || status.st_size != size_) return failed("has changed since the image was sized", 0);
  state_.file = index_;
  state_.bytesOfFile = 0;
  position_ = 0;
  buffer_.clear();
  used_ = 0;
  return 1;
}

int FileContent::close() {
  file_ = FileDescriptor();
  buffer_ = {};
  return 1;
}

bool FileContent::fillBuffer() {
  buffer_.resize(std::min(bufferBytes, static_cast<std::size_t>(size_ - position_)));
  used_ = 0;
  ssize_t count = 0;
  do count = ::pread(file_.get(), buffer_.data(), buffer_.size(), position_);
  while (count < 0 && errno == EINTR);
  buffer_.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  if (count <= 0) failed(count < 0 ? "cannot be read" : "has become shorter", count < 0 ? errno : 0);
  return count > 0;
}

int FileContent::read(void* target, std::size_t count) {
  const std::size_t wanted = std::min(count, static_cast<std::size_t>(size_ - position_));
  for (std::size_t done = 0; done < wanted;) {
    if (state_.cancelled) return static_cast<int>(ISO_CANCELED);
    if (used_ == buffer_.size() && !fillBuffer()) return static_cast<int>(ISO_FILE_READ_ERROR);
    const std::size_t part = std::min(wanted - done, buffer_.size() - used_);
    std::memcpy(static_cast<std::byte*>(target) + done, buffer_.data() + used_, part);
    used_ += part;
    done += part;
    position_ += static_cast<std::int64_t>(part);
  }
  state_.bytesOfFile = position_;
  return static_cast<int>(wanted);
}

}  // namespace trackloom::engines::writer
