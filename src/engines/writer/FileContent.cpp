#include "engines/writer/FileContent.h"

#include <cstring>
#include <new>
#include <utility>

#include "engines/writer/IsoStreams.h"

namespace trackloom::engines::writer {

ReadingState::ReadingState(std::shared_ptr<SourcesInUse> all) : calls(FileContent::calls()), inUse(std::move(all)) {}

void ReadingState::fail(const std::string& words) {
  const std::lock_guard lock(mutex_);
  if (failure_.empty()) failure_ = words;
}

std::string ReadingState::failure() const {
  const std::lock_guard lock(mutex_);
  return failure_;
}

FileContent::FileContent(std::shared_ptr<Source> source, std::size_t index, ReadingState& state)
    : source_(std::move(source)), index_(index), state_(state) {
  const SourcesInUse::Use use(state_.inUse, source_->path());
  static_cast<void>(SourceReading(source_));
}

FileContent& FileContent::of(IsoStream* stream) {
  return *static_cast<FileContent*>(dataOfIsoStream(stream));
}

IsoStream* FileContent::newStream() {
  IsoStream* stream = newIsoStream(&state_.calls, this);
  if (stream == nullptr) throw std::bad_alloc();
  return stream;
}

IsoStreamIface FileContent::calls() {
  IsoStreamIface calls{
      .version = 1,
      .type = {},
      .open = [](IsoStream* stream) { return of(stream).open(); },
      .close = [](IsoStream* stream) { return of(stream).close(); },
      .get_size = [](IsoStream* stream) { return static_cast<off_t>(of(stream).size()); },
      .read = [](IsoStream* stream, void* target, std::size_t count) { return of(stream).read(target, count); },
      .is_repeatable = [](IsoStream*) { return 1; },
      .get_id =
          [](IsoStream* stream, unsigned* system, dev_t* device, ino_t* node) {
            constexpr unsigned ours = 0x54CD;
            *system = ours;
            *device = 0;
            *node = of(stream).index_ + 1;
          },
      .free = [](IsoStream*) {},
      .update_size = [](IsoStream*) { return 1; },
      .get_input_stream = nullptr,
      .cmp_ino = nullptr,
      .clone_stream = nullptr,
  };
  std::memcpy(calls.type, "user", sizeof calls.type);
  return calls;
}

int FileContent::open() {
  try {
    use_.emplace(state_.inUse, source_->path());
    reading_.emplace(source_);
  } catch (const EngineError& error) {
    state_.fail(error.words());
    return static_cast<int>(ISO_FILE_READ_ERROR);
  }
  position_ = 0;
  // In this order, so that no file seems to have what the one before it had.
  state_.bytesOfFile = 0;
  state_.file = index_;
  return 1;
}

int FileContent::close() {
  reading_.reset();
  use_.reset();
  return 1;
}

int FileContent::read(void* target, std::size_t count) {
  try {
    const std::size_t got = reading_->readAt(position_, std::span(static_cast<std::uint8_t*>(target), count));
    position_ += static_cast<std::int64_t>(got);
    if (position_ == size()) reading_->requireUnchanged();
    state_.bytesOfFile = position_;
    return static_cast<int>(got);
  } catch (const EngineError& error) {
    state_.fail(error.words());
    return static_cast<int>(ISO_FILE_READ_ERROR);
  }
}

}  // namespace trackloom::engines::writer
