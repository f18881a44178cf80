#include "engines/encoder/LameEncoders.h"

#include <lame/lame.h>

#include <atomic>
#include <string>

#include "engines/encoder/LameTrack.h"

namespace trackloom::engines::encoder {

namespace {

constexpr std::int32_t firstRate = 128;

class LameStream final : public Mp3Stream {
 public:
  std::unique_ptr<Mp3Track> begin(std::int32_t kbps) override { return std::make_unique<LameTrack>(kbps); }
  std::int32_t BitRate() override { return rate_; }
  std::string Words() override { return std::string("LAME ") + get_lame_version(); }
  void setBitRate(std::int32_t kbps) { rate_ = kbps; }

 private:
  std::atomic<std::int32_t> rate_ = firstRate;
};

class LameEncoder final : public MP3EncoderX {
 public:
  Mp3Stream& Encoder() override { return stream_; }
  void SetBitRate(std::int32_t kbps) override { stream_.setBitRate(kbps); }

 private:
  LameStream stream_;
};

}  // namespace

std::unique_ptr<MP3EncoderX> LameEncoders::create() {
  return std::make_unique<LameEncoder>();
}

}  // namespace trackloom::engines::encoder
