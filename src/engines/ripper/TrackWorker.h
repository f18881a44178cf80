#pragma once

#include "engines/ripper/RipBoard.h"
#include "engines/ripper/RipRequest.h"

namespace trackloom::engines::ripper {

/// A worker's part of a rip, on a thread of its own: makes the files of the tracks that no other worker has begun, one
/// after the other. After a cancel it leaves no file.
void workAtTracks(const RipRequest& request, RipBoard& board);

}  // namespace trackloom::engines::ripper
