#include "engines/discdb/DiscId.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>

#include "engines/ground/Blocks.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

namespace {

/// Block 0 lies two seconds behind the place from which the CDDB counts.
constexpr std::int32_t LeadIn = 150;

std::int32_t secondOf(std::int32_t block) {
  return (block + LeadIn) / blocksASecond;
}

std::int32_t sumOfDigits(std::int32_t number) {
  std::int32_t sum = 0;
  for (; number > 0; number /= 10) sum += number % 10;
  return sum;
}

/// What no disc can have would make a false id, under which another disc may be filed.
void requirePossible(const DiscContents& disc) {
  const auto& starts = disc.starts;
  const bool inOrder = std::is_sorted(starts.begin(), starts.end(), std::less_equal<>());
  if (starts.empty() || starts.size() > mostTracks || !inOrder || starts.front() < 0 || disc.leadOut <= starts.back() ||
      disc.leadOut > mostBlocks)
    throw RuntimeError(RuntimeError::DeviceIoError, "The disc's table of contents makes no sense");
}

}  // namespace

std::string discId(const DiscContents& disc) {
  requirePossible(disc);
  std::int32_t sum = 0;
  for (const std::int32_t start : disc.starts) sum += sumOfDigits(secondOf(start));
  const std::int32_t seconds = secondOf(disc.leadOut) - secondOf(disc.starts.front());
  std::array<char, 16> id{};
  std::snprintf(id.data(), id.size(), "%02x%04x%02zx", static_cast<unsigned>(sum % 255), static_cast<unsigned>(seconds),
                disc.starts.size());
  return id.data();
}

std::string queryCommand(const DiscContents& disc) {
  std::string command = "cddb query " + discId(disc) + " " + std::to_string(disc.starts.size());
  for (const std::int32_t start : disc.starts) command += " " + std::to_string(start + LeadIn);
  return command + " " + std::to_string(secondOf(disc.leadOut));
}

}  // namespace trackloom::engines::discdb
