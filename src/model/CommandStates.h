#pragma once

namespace trackloom {

struct Session;

/// Enables and disables commands, all derived afresh from the open layout, its rows, its kind, and the disc in the
/// drive. The only routine that does so; a tool keeps its state until the next call.
void UpdateCommandStates(Session& session);

}  // namespace trackloom
