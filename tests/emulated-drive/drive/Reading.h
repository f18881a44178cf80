#pragma once

#include "Bytes.h"
#include "Command.h"
#include "Disc.h"
#include "Sectors.h"

namespace emulated {

/// READ(10) and READ(12): blocks of data tracks.
Bytes readBlocks(const Command& command, const Disc& disc, const Sectors& sectors);
/// READ CD and READ CD MSF: sectors of any kind with what of them is asked for (MMC-3, 6.19).
Bytes readSectors(const Command& command, const Disc& disc, const Sectors& sectors);
/// `count` blocks of data from `block` on, as a block device reads them.
Bytes blocksOfData(std::int32_t block, std::int32_t count, const Disc& disc, const Sectors& sectors);

}  // namespace emulated
