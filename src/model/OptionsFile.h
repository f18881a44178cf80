#pragma once

namespace trackloom {

struct Session;

/// Reads `Options.dat` into Options. Throws RuntimeError, and Options keeps what it held.
void readOptionsFile(Session& session);

/// Writes Options as record 1 of `Options.dat`. Throws RuntimeError.
void writeOptionsFile(Session& session);

/// Reads the options; without a file it makes one of the defaults and maximises the main window. Never fails.
void LoadOptions(Session& session);

}  // namespace trackloom
