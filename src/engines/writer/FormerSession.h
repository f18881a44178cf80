#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "engines/disc/Recorder.h"
#include "engines/writer/IsoLibrary.h"

namespace trackloom::engines::writer {

/// The last data session of a disc, whose files the next one shows again. It belongs to that disc: its sectors stay
/// where they are, and are read from there.
class FormerSession {
 public:
  /// Nothing: the disc takes no more, or holds no data.
  static std::optional<FormerSession> on(std::shared_ptr<Recorder> recorder, const DiscState& disc);

  /// Whether this is the disc on which the session lies.
  bool liesOn(const DiscState& disc) const;
  /// Puts its tree into an image that has nothing in it yet. Throws EngineError where it cannot be read.
  void importInto(IsoImage& image) const;
  /// Throws EngineError where its tree cannot be read.
  void requireReadable() const;

 private:
  FormerSession(std::shared_ptr<Recorder> recorder, DiscState disc)
      : recorder_(std::move(recorder)), disc_(std::move(disc)) {}

  std::shared_ptr<Recorder> recorder_;
  DiscState disc_;
};

}  // namespace trackloom::engines::writer
