#pragma once

namespace trackloom {

/// What the dialogs for image files offer.
inline constexpr const char* IsoFilter = "ISO Images (*.iso)|*.iso";

}  // namespace trackloom
