#pragma once

#include <lame/lame.h>

#include <cstdint>
#include <memory>

#include "ports/Mp3Stream.h"

namespace trackloom::engines::encoder {

/// One MP3 stream of constant rate (ISO/IEC 11172-3, layer III), 44.1 kHz stereo, without tags. Its first frame is the
/// Info header (the "LAME tag": length, delay and padding), empty until infoFrame() takes its place.
class LameTrack final : public Mp3Track {
 public:
  /// Throws EngineError where the library cannot encode at this rate.
  explicit LameTrack(std::int32_t kbps);

  /// Throws EngineError, as all members do.
  std::vector<std::byte> feed(std::span<const std::int16_t> samples) override;
  std::vector<std::byte> finish() override;
  std::vector<std::byte> infoFrame() override;

 private:
  struct Close {
    void operator()(lame_global_flags* lame) const { lame_close(lame); }
  };

  std::unique_ptr<lame_global_flags, Close> lame_;
};

}  // namespace trackloom::engines::encoder
