#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "ports/CDRipperX.h"

namespace trackloom::fakes {

/// Writes down what a rip engine tells, in one line each: "TrackStarted 0-20 1" (sectors and caller's number),
/// "RipStatus 5 17". Of the positions the last one of each track stands there alone, all are in `positions`.
class RipperTranscript : public CDRipperEvents {
 public:
  std::vector<std::string> lines;
  /// Of each TrackStarted, where the track then lay.
  std::vector<HostPath> paths;
  /// The bytes of each track's file while TrackFinished ran are what this hook looks at.
  std::function<void(const std::string& line)> onLine = [](const std::string&) {};
  std::vector<std::int32_t> positions;
  /// Handlers that run at the same moment, at the most.
  int deepest = 0;

  bool ended() const { return !lines.empty() && lines.back() == "RipFinished"; }
  bool has(const std::string& line) const { return std::find(lines.begin(), lines.end(), line) != lines.end(); }

  void RipStarted() override { tell("RipStarted"); }
  void TrackStarted(const HostPath& path, std::int32_t first, std::int32_t last, std::int32_t number) override {
    paths.push_back(path);
    first_ = first;
    last_ = last;
    tell("TrackStarted " + std::to_string(first) + "-" + std::to_string(last) + " " + std::to_string(number));
  }
  void RipStatus(std::int32_t code, std::int32_t value) override {
    if (code == RipProgress) {
      positions.push_back(value);
      within = within && value >= first_ && value <= last_;
    }
    const std::string line = "RipStatus " + std::to_string(code) + " " + std::to_string(value);
    if (code != RipProgress || value == last_)
      tell(line);
    else
      enter(line);
  }
  void TrackFinished() override { tell("TrackFinished"); }
  void RipFinished() override { tell("RipFinished"); }

  /// All positions lay in the track that was announced.
  bool within = true;

 private:
  void tell(const std::string& line) {
    // A track that stands still at its end tells of it again and again.
    if (lines.empty() || line != lines.back() || !line.starts_with("RipStatus 7")) lines.push_back(line);
    enter(line);
  }
  void enter(const std::string& line) {
    ++depth_;
    deepest = std::max(deepest, depth_);
    onLine(line);
    --depth_;
  }

  std::int32_t first_ = 0;
  std::int32_t last_ = 0;
  int depth_ = 0;
};

}  // namespace trackloom::fakes
