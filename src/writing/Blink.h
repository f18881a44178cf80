#pragma once

namespace trackloom {

/// Milliseconds for which `imgStatus` of frmDiskInfo and of frmErase is shown and then hidden, as long as the drive
/// works.
inline constexpr int BlinkTime = 2000;

}  // namespace trackloom
