#pragma once

namespace trackloom {

class RuntimeError;
struct Session;

/// Saves the open layout aside if it has unsaved rows, and tells the user the error and where the copy is. It goes
/// among the layouts, or into the user's home where those cannot be written.
void rescueLayout(Session& session, const RuntimeError& error);

/// The end of a program that met an error nobody handles: rescues the open layout and ends the process with status 1.
void endWithError(Session& session, const RuntimeError& error);

}  // namespace trackloom
