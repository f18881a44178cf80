#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ports/DiscDatabase.h"

namespace trackloom::engines::discdb {

// What a CDDB server says (CDDB server protocol, level 6). It may say anything: whatever is no whole reply of the
// protocol raises RuntimeError, and nothing of it is taken for a name.

/// Where the server keeps an entry. Both are single words without any sign that means something elsewhere.
struct EntryPlace {
  std::string category;
  std::string id;
};

/// The first place that a reply to `cddb query` names, of exact (200, 210) and inexact (211) matches alike; nothing:
/// there is no match (202, an empty list).
std::optional<EntryPlace> firstMatch(std::string_view reply);

/// The record in a reply to `cddb read`. Where it names no genre, `category` stands for it, or that of the reply's own
/// first line.
DiscRecord entryOf(std::string_view reply, std::string_view category = {});

/// The titles up to the last that says something; a track whose title is blank would have no name at all, one that is
/// not there gets its number.
std::vector<DiscTrackRecord> withoutTail(std::vector<DiscTrackRecord> tracks);

}  // namespace trackloom::engines::discdb
