#pragma once

#include <cstdint>
#include <string>

#include "runtime/Numbers.h"

namespace trackloom {

struct Session;

/// Blocks charged for each track on top of its own: two seconds of audio, on both kinds of layout.
inline constexpr std::int32_t TrackCharge = 150;

/// The kind of block that the open layout is counted in; only an audio layout counts audio blocks.
std::int32_t layoutBlockKind(const Session& session);

/// The blocks of the queue that the open layout uses, without any charge.
std::int32_t layoutQueueBlocks(Session& session);

/// A byte count for the eye: "1023 Bytes", "1.00 KB", "1.00 MB", "1.00 GB".
std::string FormatSize(double bytes, const Separators& separators);

/// Draws the meter and the totals of the open layout afresh; does nothing without one.
void UpdateCapacityDisplay(Session& session);

/// Sets TrackWontFit: the queue with all charges and one more goes beyond the meter's maximum.
void CheckRoomForTrack(Session& session);

}  // namespace trackloom
