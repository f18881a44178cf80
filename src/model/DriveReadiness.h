#pragma once

namespace trackloom {

struct Session;

/// Looks at the disc for a layout: empties both queues, insists on a disc, and takes its free space as the meter's
/// scale. The caller has set LayoutOpen; it is False afterwards when the user gave up or the disc has no room at all.
void ReadDiscCapacity(Session& session);

}  // namespace trackloom
