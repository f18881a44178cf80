#pragma once

#include <string>

namespace trackloom {

/// What an engine knows about its last failure beyond the codes that its events tell. The program's own texts never
/// contain it: the desktop shows it beside them.
class FailureDetail {
 public:
  FailureDetail() = default;
  FailureDetail(const FailureDetail&) = delete;
  FailureDetail& operator=(const FailureDetail&) = delete;
  virtual ~FailureDetail() = default;

  /// On what it failed, and why, in UTF-8 without a line break at the end: "/home/u/a.mp3: No such file or directory".
  /// Empty while nothing has failed, and where the event's own words say all. It belongs to the failure whose event was
  /// told last, from before that event until the next operation begins. To be asked on the window's thread; never
  /// waits.
  virtual std::string lastFailure() const = 0;
};

}  // namespace trackloom
