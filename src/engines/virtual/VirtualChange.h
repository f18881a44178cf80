#pragma once

#include <cstddef>
#include <cstdint>
#include <stop_token>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/virtual/DiscFolder.h"
#include "engines/virtual/RecorderSettings.h"

namespace trackloom::engines::virtualrecorder {

// What a recorder does with a disc but writing tracks. All throw EngineError.

/// The disc reads as spoilt from its first change until it is blank, and can then be erased again.
void eraseDisc(const DiscFolder& disc, const RecorderSettings& settings, bool quick, OperationObserver& observer,
               const std::stop_token& stop);
void closeLastSession(const DiscFolder& disc, const RecorderSettings& settings, bool alsoDisc,
                      OperationObserver& observer, const std::stop_token& stop);
std::vector<std::byte> readDisc(const DiscFolder& disc, std::int32_t block, std::int32_t count);

/// Where the recorder was killed between disc.ini and disc.cue; what cannot be mended stays as it is.
void mendCueSheetOf(const DiscFolder& disc);

/// Throws EngineError for a disc that cannot be made sense of.
VirtualDisc understood(const DiscFolder& disc);

}  // namespace trackloom::engines::virtualrecorder
