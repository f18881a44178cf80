#pragma once

#include <string>

#include "engines/discdb/DiscContents.h"

namespace trackloom::engines::discdb {

/// The id under which the CDDB files a disc (CDDB howto, "Appendix A - CDDB discid algorithm"): 8 hexadecimal digits,
/// made of the seconds at which its tracks begin, its length and the number of its tracks. Discs can share one. Throws
/// RuntimeError where no disc can have these contents.
std::string discId(const DiscContents& disc);

/// The server's command that asks for a disc: "cddb query <id> <tracks> <offset>... <seconds>", where the offsets count
/// from the beginning of the lead-in's last two seconds. Throws RuntimeError as above.
std::string queryCommand(const DiscContents& disc);

}  // namespace trackloom::engines::discdb
