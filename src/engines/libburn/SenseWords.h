#pragma once

#include <cstdint>
#include <string>

#include "engines/ground/EngineError.h"

namespace trackloom::engines::libburn {

/// What a drive's refusal or failure means (MMC-3, annex F, and SPC-3, 4.5), `number` being 0xKKCCQQ; of a code that is
/// not in the table its sense key.
std::string wordsOf(std::int32_t number);

/// "the drive cannot write block 40: write error (3/0C/00)", `what` being all before the colon.
EngineError driveError(std::int32_t number, const std::string& what);

namespace sensekey {
inline constexpr std::int32_t unitAttention = 0x06;
}  // namespace sensekey

inline std::int32_t keyOf(std::int32_t number) {
  return number >> 16;
}
/// The drive will be able to answer in a moment: it spins up, writes on, erases or closes.
bool isPassing(std::int32_t number);

}  // namespace trackloom::engines::libburn
