#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ports/CDRipperX.h"

namespace trackloom::fakes {

/// Writes down what a rip engine tells, in one line each: "TrackStarted 0-20 1" (sectors and caller's number),
/// "RipStatus 5 17". Of the positions the last one of each track stands there alone, all are in `positions`.
class RipperTranscript : public CDRipperEvents {
 public:
  RipperTranscript();
  ~RipperTranscript() override;

  std::vector<std::string> lines;
  /// Of each TrackStarted, where the track then lay.
  std::vector<HostPath> paths;
  /// The bytes of each track's file while TrackFinished ran are what this hook looks at.
  std::function<void(const std::string& line)> onLine;
  std::vector<std::int32_t> positions;
  /// Handlers that run at the same moment, at the most.
  int deepest = 0;

  bool ended() const;
  bool has(const std::string& line) const;

  void RipStarted() override;
  void TrackStarted(const HostPath& path, std::int32_t first, std::int32_t last, std::int32_t number) override;
  void RipStatus(std::int32_t code, std::int32_t value) override;
  void TrackFinished() override;
  void RipFinished() override;

  /// All positions lay in the track that was announced.
  bool within = true;

 private:
  void tell(const std::string& line);
  void enter(const std::string& line);

  std::int32_t first_ = 0;
  std::int32_t last_ = 0;
  int depth_ = 0;
};

}  // namespace trackloom::fakes
