#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "engines/disc/DiscText.h"

namespace trackloom::engines::ripper {

/// The names in the reply to READ TOC/PMA/ATIP, format 5, CD-TEXT (MMC-3, 6.26.3.7), of a disc of so many tracks; none
/// at all where it makes no sense.
DiscText textFrom(std::span<const std::uint8_t> reply, std::size_t tracks);

}  // namespace trackloom::engines::ripper
