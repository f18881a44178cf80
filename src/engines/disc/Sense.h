#pragma once

#include <cstdint>
#include <string_view>

#include "engines/ground/EngineError.h"

namespace trackloom::engines {

/// Refusals and failures as recorders number them: sense key, additional sense code and its
/// qualifier, packed as 0xKKCCQQ (T10 SPC-5, numeric order of codes).
namespace sense {
inline constexpr std::int32_t notReady = 0x020400;
inline constexpr std::int32_t busy = 0x020408;
inline constexpr std::int32_t noMedium = 0x023A00;
inline constexpr std::int32_t readError = 0x031100;
inline constexpr std::int32_t trayStuck = 0x045300;
inline constexpr std::int32_t writeError = 0x030C00;
inline constexpr std::int32_t outOfRange = 0x052100;
inline constexpr std::int32_t badOrder = 0x052600;
inline constexpr std::int32_t badSequence = 0x052C00;
inline constexpr std::int32_t cannotWriteMedium = 0x053005;
inline constexpr std::int32_t noRoom = 0x056300;
inline constexpr std::int32_t wrongKind = 0x056400;
inline constexpr std::int32_t tooManyTracks = 0x057205;
inline constexpr std::int32_t miscompare = 0x0E1D00;
}  // namespace sense

/// A device's refusal or failure, whose words end with its number in the usual writing, such as "write error at block
/// 15230 (3/0C/00)".
EngineError deviceError(std::int32_t number, std::string_view words);

}  // namespace trackloom::engines
