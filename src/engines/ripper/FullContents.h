#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "engines/disc/ReadingDrive.h"

namespace trackloom::engines::ripper {

/// A disc's contents from the reply to READ TOC/PMA/ATIP, format 2, full TOC (MMC-3, 6.26.3.4); nothing: it makes no
/// sense, or lists no track.
std::optional<DiscContents> contentsFrom(std::span<const std::uint8_t> fullToc);

}  // namespace trackloom::engines::ripper
