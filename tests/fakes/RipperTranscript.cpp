#include "fakes/RipperTranscript.h"

#include <algorithm>

namespace trackloom::fakes {

RipperTranscript::RipperTranscript() : onLine([](const std::string&) {}) {}

RipperTranscript::~RipperTranscript() = default;

bool RipperTranscript::ended() const {
  return !lines.empty() && lines.back() == "RipFinished";
}

bool RipperTranscript::has(const std::string& line) const {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

void RipperTranscript::RipStarted() {
  tell("RipStarted");
}

void RipperTranscript::TrackStarted(const HostPath& path, std::int32_t first, std::int32_t last, std::int32_t number) {
  paths.push_back(path);
  first_ = first;
  last_ = last;
  tell("TrackStarted " + std::to_string(first) + "-" + std::to_string(last) + " " + std::to_string(number));
}

void RipperTranscript::RipStatus(std::int32_t code, std::int32_t value) {
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

void RipperTranscript::TrackFinished() {
  tell("TrackFinished");
}

void RipperTranscript::RipFinished() {
  tell("RipFinished");
}

void RipperTranscript::tell(const std::string& line) {
  // A track that stands still at its end tells of it again and again.
  if (lines.empty() || line != lines.back() || !line.starts_with("RipStatus 7")) lines.push_back(line);
  enter(line);
}

void RipperTranscript::enter(const std::string& line) {
  ++depth_;
  deepest = std::max(deepest, depth_);
  onLine(line);
  --depth_;
}

}  // namespace trackloom::fakes
