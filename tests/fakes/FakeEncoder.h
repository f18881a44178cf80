#pragma once

#include <string>
#include <vector>

#include "fakes/RipperStage.h"
#include "ports/MP3EncoderX.h"

namespace trackloom::fakes {

/// An encoder that notes what it is told; its files are empty.
class FakeEncoder final : public MP3EncoderX {
 public:
  explicit FakeEncoder(RipperStage& stage) : stage_(stage) {}

  Mp3Stream& Encoder() override {
    stage_.note("MP31.Encoder");
    return stream_;
  }
  void SetBitRate(std::int32_t kbps) override {
    stage_.note("MP31.BitRate", "=" + std::to_string(kbps));
    stream_.rate = kbps;
  }

 private:
  class Silence final : public Mp3Track {
   public:
    std::vector<std::byte> feed(std::span<const std::int16_t>) override { return {}; }
    std::vector<std::byte> finish() override { return {}; }
    std::vector<std::byte> infoFrame() override { return {}; }
  };
  class Stream final : public Mp3Stream {
   public:
    std::int32_t rate = 0;
    std::unique_ptr<Mp3Track> begin(std::int32_t) override { return std::make_unique<Silence>(); }
    std::int32_t BitRate() override { return rate; }
  };

  RipperStage& stage_;
  Stream stream_;
};

}  // namespace trackloom::fakes
