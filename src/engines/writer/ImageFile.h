#pragma once

#include <stop_token>
#include <string>
#include <vector>

#include "engines/writer/DataQueue.h"
#include "engines/writer/EventsInCall.h"

namespace trackloom::engines::writer {

/// Writes the image of a data disc to a file, in place of what is there, and tells of each file in the order in which
/// they lie in the image: OnImageTrackStart, OnTrackCacheStart and OnCacheProgress up to its blocks. Sources that are
/// not there any more are left out, and none of them can be the target. Throws EngineError and Stopped, and what was
/// there stays as it was.
void writeImageFile(const HostPath& target, std::vector<DataEntry> entries, const std::string& label,
                    EventsInCall& events, const std::stop_token& stop);

}  // namespace trackloom::engines::writer
