#pragma once

#include <cstdint>

namespace emulated {

/// Why a command failed: sense key, additional code and qualifier (SPC-3, 4.5).
struct Sense {
  std::uint8_t key = 0;
  std::uint8_t code = 0;
  std::uint8_t qualifier = 0;

  bool operator==(const Sense&) const = default;
};

namespace sense {
inline constexpr Sense none{};
inline constexpr Sense becomingReady{0x02, 0x04, 0x01};
inline constexpr Sense operationInProgress{0x02, 0x04, 0x07};
inline constexpr Sense longWriteInProgress{0x02, 0x04, 0x08};
inline constexpr Sense noMedium{0x02, 0x3A, 0x00};
inline constexpr Sense unreadable{0x03, 0x11, 0x00};
inline constexpr Sense writeError{0x03, 0x0C, 0x00};
inline constexpr Sense trayStuck{0x04, 0x53, 0x00};
inline constexpr Sense lengthError{0x05, 0x1A, 0x00};
inline constexpr Sense unknownCommand{0x05, 0x20, 0x00};
inline constexpr Sense outOfRange{0x05, 0x21, 0x00};
inline constexpr Sense notNextWritable{0x05, 0x21, 0x02};
inline constexpr Sense badField{0x05, 0x24, 0x00};
inline constexpr Sense badParameter{0x05, 0x26, 0x00};
inline constexpr Sense badSequence{0x05, 0x2C, 0x00};
inline constexpr Sense cannotWrite{0x05, 0x30, 0x05};
inline constexpr Sense removalPrevented{0x05, 0x53, 0x02};
inline constexpr Sense endOfArea{0x05, 0x63, 0x00};
inline constexpr Sense wrongMode{0x05, 0x64, 0x00};
inline constexpr Sense incompleteTrack{0x05, 0x72, 0x04};
inline constexpr Sense noMoreTracks{0x05, 0x72, 0x05};
inline constexpr Sense mediumChanged{0x06, 0x28, 0x00};
}  // namespace sense

/// Ends a command with CHECK CONDITION.
struct CheckCondition {
  Sense sense;
};

/// The drive is no longer there.
struct Unplugged {};

inline void require(bool holds, const Sense& otherwise) {
  if (!holds) throw CheckCondition{otherwise};
}

}  // namespace emulated
