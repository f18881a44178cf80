#include "engines/audio/Mp3Walk.h"

#include <algorithm>
#include <array>

namespace trackloom::engines::audio {

Mp3Walk::Mp3Walk(SourceReading& reading, const Mp3Extent& extent)
    : reading_(reading), extent_(extent), position_(extent.begin) {}

std::optional<Mp3Walk::Frame> Mp3Walk::next() {
  auto frame = frameAt(position_);
  if (!frame) frame = search();
  position_ = frame ? frame->at + static_cast<std::int64_t>(frame->size) : extent_.end;
  return frame;
}

// A frame that is cut short is none.
std::optional<Mp3Walk::Frame> Mp3Walk::frameAt(std::int64_t at) {
  std::array<std::uint8_t, HeaderSize> bytes{};
  const std::size_t got = reading_.readAt(at, bytes);
  const auto header = headerAt(Bytes(bytes).first(got), 0);
  const auto size = header ? header->size(extent_.freeSize) : std::nullopt;
  if (!size || static_cast<std::int64_t>(*size) > extent_.end - at) return std::nullopt;
  return Frame{.at = at, .size = *size};
}

// Out of step, one header proves nothing: noise looks like one every few hundred kilobytes.
std::optional<Mp3Walk::Frame> Mp3Walk::search() {
  while (position_ < extent_.end) {
    const Bytes known = reading_.from(position_);
    if (known.empty()) break;
    const auto skipped = std::find(known.begin(), known.end(), 0xFF) - known.begin();
    position_ += skipped;
    if (skipped == static_cast<std::ptrdiff_t>(known.size())) continue;
    if (const auto frame = frameAt(position_); frame && isFollowed(*frame)) return frame;
    ++position_;
  }
  return std::nullopt;
}

bool Mp3Walk::isFollowed(const Frame& frame) {
  const std::int64_t behind = frame.at + static_cast<std::int64_t>(frame.size);
  return behind == extent_.end || frameAt(behind);
}

std::int64_t countFrames(SourceReading& reading, const Mp3Extent& extent) {
  Mp3Walk walk(reading, extent);
  std::int64_t frames = 0;
  while (walk.next()) ++frames;
  return frames;
}

}  // namespace trackloom::engines::audio
