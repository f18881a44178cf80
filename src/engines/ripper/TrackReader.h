#pragma once

#include <memory>

#include "engines/ripper/RipBoard.h"
#include "engines/ripper/RipRequest.h"

namespace trackloom::engines::ripper {

/// The reader's part of a rip, on a thread of its own: begins to read the disc and puts the sound of all tracks onto
/// the board, in their order. Returns soon after a cancel, unless the drive hangs.
void readTracks(const RipRequest& request, RipBoard& board);

}  // namespace trackloom::engines::ripper
