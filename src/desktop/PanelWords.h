#pragma once

#include <QString>
#include <cstdint>

#include "ports/DiscShelf.h"

namespace trackloom {

// How the front panel speaks of discs.

/// "CD-R, 80 min"; empty for a disc that nobody can make sense of.
QString mediumText(const ShelfDisc& disc);
/// What is recorded: "42:10" of sound or "412 MB" of data.
QString contentText(const ShelfDisc& disc);
/// "Open, 3 tracks".
QString stateText(const ShelfDisc& disc);
/// "12:30 used, 67:29 free"; empty where it means nothing.
QString roomText(const ShelfDisc& disc);
/// How long ago, by clocks that may disagree: "just now", "5 min", "3 h", "2 days". Both in seconds since 1970.
QString ageText(std::int64_t changed, std::int64_t now);

}  // namespace trackloom
