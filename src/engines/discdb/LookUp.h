#pragma once

#include <optional>
#include <string>

#include "engines/discdb/DiscContents.h"
#include "engines/discdb/WebServer.h"
#include "engines/ground/EngineSettings.h"
#include "ports/DiscDatabase.h"

namespace trackloom::engines::discdb {

/// What the server said of a disc, understood and as it was sent.
struct FoundEntry {
  DiscRecord record;
  std::string reply;
};

/// Whether anything may be asked: an address of the form name@place stands in the settings.
bool mayAsk(const DiscServerSettings& server);

/// Asks the server for a disc, and for the first match alone what stands there. Nothing: it knows no such disc. Throws
/// RuntimeError; may take until the deadline, and where the name of the server is not resolved somewhat longer.
std::optional<FoundEntry> lookUp(const DiscServerSettings& server, const DiscContents& disc, WebServer::Time deadline);

}  // namespace trackloom::engines::discdb
