#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <utility>

#include "engines/ripper/RipBoard.h"
#include "engines/ripper/RipEvents.h"
#include "engines/ripper/RipLog.h"
#include "engines/ripper/RipRequest.h"

namespace trackloom::engines::ripper {

/// Tells of a rip, on a thread of its own: track by track in their order, however far reader and workers have come, and
/// gives each file its name when its end has been told.
class RipTeller {
 public:
  RipTeller(const RipRequest& request, RipBoard& board, RipEvents& events)
      : request_(request), board_(board), events_(events) {}

  /// Until all tracks are through. Throws Stopped after a cancel.
  void run();
  const std::vector<RippedTrack>& told() const { return told_; }

 private:
  void tellTrack(std::size_t track);
  void tellReading(std::size_t track);
  void tellCode(std::int32_t code);
  /// Until its handler has returned, or nobody is there any more. Throws Stopped where it is never told.
  void tellUntilHeard(RipEvents::Tell event);
  HostPath settle(TrackEnd& end);

  const RipRequest& request_;
  RipBoard& board_;
  RipEvents& events_;
  /// The places of the files that this rip has made.
  std::set<std::pair<std::uint64_t, std::uint64_t>> made_;
  std::vector<RippedTrack> told_;
};

}  // namespace trackloom::engines::ripper
