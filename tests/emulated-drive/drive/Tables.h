#pragma once

#include "Bytes.h"
#include "Command.h"
#include "Disc.h"
#include "Pages.h"
#include "Sectors.h"

namespace emulated {

/// READ TOC/PMA/ATIP, formats 0, 1, 2, 4 and 5 (MMC-3, 6.30).
Bytes tableOfContents(const Command& command, const Disc& disc, const Sectors& sectors);
/// READ DISC INFORMATION (MMC-3, 6.26).
Bytes discInformation(const Command& command, const Disc& disc);
/// READ TRACK INFORMATION (MMC-3, 6.31). The next writable address depends on how the host means to write.
Bytes trackInformation(const Command& command, const Disc& disc, const Pages& pages);
/// READ CAPACITY and READ FORMAT CAPACITIES.
Bytes capacity(const Command& command, const Disc& disc);
Bytes formatCapacities(const Command& command, const Disc& disc);
/// READ SUB-CHANNEL: that nothing plays, and neither catalogue number nor codes (MMC-3, 6.29).
Bytes subChannel(const Command& command);

}  // namespace emulated
