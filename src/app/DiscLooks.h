#pragma once

#include <future>

#include "engines/disc/ReadingDrive.h"
#include "engines/discdb/DiscContents.h"

namespace trackloom {

/// How the disc database looks at the disc in the drive of a letter, "D" being the first; once the drives are found.
engines::discdb::ContentsOf contentsOf(std::shared_future<engines::ReadingDrives> drives);

}  // namespace trackloom
