#pragma once

namespace trackloom {

class RuntimeError;
struct Session;

/// What an error that nobody handles begins with: the open layout is rescued, and the user is told the error and where
/// the copy is. Where no place takes the copy, the user can make room or give the layout up. From here on nothing but
/// these boxes takes input.
void tellFatalError(Session& session, const RuntimeError& error);

/// The same where nothing can be asked: the layout is rescued, and whoever started the process is told.
void rescueUnasked(Session& session);

}  // namespace trackloom
