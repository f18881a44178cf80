#pragma once

#include "engines/disc/ReadingDrive.h"
#include "engines/discdb/DiscContents.h"

namespace trackloom {

/// How the disc database looks at the disc in the drive of a letter, "D" being the first.
engines::discdb::ContentsOf contentsOf(engines::ReadingDrives drives);

}  // namespace trackloom
