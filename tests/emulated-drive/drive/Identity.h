#pragma once

#include <optional>

#include "Bytes.h"
#include "Command.h"
#include "Disc.h"
#include "Settings.h"

namespace emulated {

/// INQUIRY, its pages of product data among it (SPC-3, 6.4).
Bytes inquiry(const Command& command, const Settings& settings);
/// GET CONFIGURATION (MMC-3, 6.6); `disc` is what is loaded.
Bytes configuration(const Command& command, const Settings& settings, const Disc* disc);
/// GET PERFORMANCE: the speeds of reading and writing (MMC-3, 6.8).
Bytes performance(const Command& command, const Settings& settings, const Disc* disc);

}  // namespace emulated
