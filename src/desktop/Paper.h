#pragma once

#include <QPageSize>
#include <QSizeF>

#include "runtime/Paths.h"

namespace trackloom {

/// What a page can be printed on.
enum class Paper { Letter, A4 };

QPageSize pageSize(Paper paper);
/// Width and height in twips.
QSizeF twipsOf(Paper paper);

// The user's choice of paper, in a file of the print control's own beside the program; Letter until there is one. A
// choice that cannot be kept holds for this time.
Paper loadPaper(const HostPath& folder);
void savePaper(const HostPath& folder, Paper paper);

}  // namespace trackloom
