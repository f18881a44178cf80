#include "engines/writer/FinishedImage.h"

#include <algorithm>
#include <utility>

#include "engines/ground/Blocks.h"

namespace trackloom::engines::writer {

FinishedImage::FinishedImage(const std::shared_ptr<Source>& source, std::shared_ptr<SourcesInUse> inUse)
    : use_(std::move(inUse), source->path()), reading_(source) {}

std::int32_t FinishedImage::blocks() const {
  constexpr auto sector = static_cast<std::int64_t>(dataSectorBytes);
  return saturated(reading_.size() / sector + (reading_.size() % sector != 0 ? 1 : 0));
}

void FinishedImage::read(std::span<std::byte> sectors) {
  const std::span bytes(reinterpret_cast<std::uint8_t*>(sectors.data()), sectors.size());
  const std::size_t count = reading_.readAt(position_, bytes);
  std::ranges::fill(bytes.subspan(count), std::uint8_t{0});
  position_ += static_cast<std::int64_t>(count);
  if (position_ == reading_.size()) reading_.requireUnchanged();
}

}  // namespace trackloom::engines::writer
