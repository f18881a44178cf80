#pragma once

#include <string>

namespace trackloom {

class CDWriterXP;
struct Session;

/// Tells the user the first track of the listing whose file is not there, and what has stopped for it, such as "CD
/// creation". True: all are there.
bool tracksExist(Session& session, const std::string& work);

/// Queues the rows of the listing in their order, each under its path on the disc. What the engine refuses is not told
/// here.
void queueDataRows(Session& session, CDWriterXP& writer);

}  // namespace trackloom
