#pragma once

namespace trackloom {

class RuntimeError;
struct Session;

/// The end of a program that met an error nobody handles: saves the open layout aside if it has unsaved rows, tells the
/// user the error and the name of the copy, and ends the process with status 1.
void endWithError(Session& session, const RuntimeError& error);

}  // namespace trackloom
