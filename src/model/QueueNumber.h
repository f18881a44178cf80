#pragma once

#include <cstdint>

#include "runtime/Paths.h"

namespace trackloom {

struct Session;

/// Hears one entry of the audio queue while the engine lists it: if it is the selected row's file, its number becomes
/// QueueIndexOfSelection. Without such an entry the number of the last time stays.
void noteListedTrack(Session& session, const HostPath& path, std::int16_t number);

}  // namespace trackloom
