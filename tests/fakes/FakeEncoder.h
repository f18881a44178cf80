#pragma once

#include <cstdint>
#include <memory>

#include "fakes/RipperStage.h"
#include "ports/MP3EncoderX.h"

namespace trackloom::fakes {

/// An encoder that notes what it is told; its files are empty.
class FakeEncoder final : public MP3EncoderX {
 public:
  explicit FakeEncoder(RipperStage& stage);
  ~FakeEncoder() override;

  Mp3Stream& Encoder() override;
  void SetBitRate(std::int32_t kbps) override;

 private:
  class Stream final : public Mp3Stream {
   public:
    std::int32_t rate = 0;
    std::unique_ptr<Mp3Track> begin(std::int32_t) override;
    std::int32_t BitRate() override { return rate; }
  };

  RipperStage& stage_;
  Stream stream_;
};

}  // namespace trackloom::fakes
