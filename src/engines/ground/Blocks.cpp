#include "engines/ground/Blocks.h"

#include <algorithm>
#include <limits>

namespace trackloom::engines {

namespace {

constexpr std::int32_t secondsAMinute = 60;

std::string twoDigits(std::int32_t number) {
  std::string digits = std::to_string(number);
  if (digits.size() < 2) digits.insert(0, 1, '0');
  return digits;
}

}  // namespace

std::int32_t saturated(std::int64_t value) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

std::int32_t bytesOfBlocks(std::int32_t blocks, std::int32_t kind) {
  const auto bytes = static_cast<std::int64_t>(bytesOfSector(kind == AudioBlocks ? AudioBlocks : DataBlocks));
  return saturated(std::max<std::int64_t>(blocks, 0) * bytes);
}

std::string timeOfBlocks(std::int32_t blocks) {
  const std::int32_t frames = std::max(blocks, 0);
  const std::int32_t seconds = frames / blocksASecond;
  return twoDigits(seconds / secondsAMinute) + ":" + twoDigits(seconds % secondsAMinute) + ":" +
         twoDigits(frames % blocksASecond);
}

}  // namespace trackloom::engines
