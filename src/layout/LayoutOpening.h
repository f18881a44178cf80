#pragma once

namespace trackloom {

struct LayoutForms;
struct Session;

/// Reads the file that the layout has into the empty listing and the empty queues, and tells which of its tracks were
/// missing. False: the file could not be read, which the user was told, and the caller closes the layout.
bool OpenLayout(Session& session, LayoutForms& forms);

}  // namespace trackloom
