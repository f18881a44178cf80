#pragma once

#include <string>
#include <vector>

namespace trackloom::engines {

/// What a disc or one of its tracks is called, in UTF-8; empty: it is not told.
struct DiscName {
  std::string title;
  std::string performer;

  bool operator==(const DiscName&) const = default;
};

/// The names that a disc bears beside its music (CD-TEXT, IEC 61866).
struct DiscText {
  DiscName disc;
  /// One for each track; or none at all.
  std::vector<DiscName> tracks;

  bool operator==(const DiscText&) const = default;
};

/// The text as a disc takes it: without control characters, without the performers of tracks that are the disc's
/// own, and with names so short that all of them together have room in the lead-in.
DiscText fitted(DiscText text);

}  // namespace trackloom::engines
