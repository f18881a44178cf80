#pragma once

namespace trackloom {

class CommonControls;

/// Initialises the window system's common controls; True when no error arose.
bool InitXPControls(CommonControls& controls);

}  // namespace trackloom
