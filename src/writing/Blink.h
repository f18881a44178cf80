#pragma once

#include "controls/PictureBox.h"

namespace trackloom {

/// Milliseconds for which `imgStatus` of frmDiskInfo and of frmErase is shown and then hidden, as long as the drive
/// works.
inline constexpr int BlinkTime = 2000;

/// One blink: what is shown is hidden, and shown again by the next one.
inline void blink(PictureBox& picture) {
  picture.Visible = !picture.Visible;
}

}  // namespace trackloom
