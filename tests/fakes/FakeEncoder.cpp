#include "fakes/FakeEncoder.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace trackloom::fakes {

namespace {

class Silence final : public Mp3Track {
 public:
  std::vector<std::byte> feed(std::span<const std::int16_t>) override { return {}; }
  std::vector<std::byte> finish() override { return {}; }
  std::vector<std::byte> infoFrame() override { return {}; }
};

}  // namespace

FakeEncoder::FakeEncoder(RipperStage& stage) : stage_(stage) {}

FakeEncoder::~FakeEncoder() = default;

Mp3Stream& FakeEncoder::Encoder() {
  stage_.note("MP31.Encoder");
  return stream_;
}

void FakeEncoder::SetBitRate(std::int32_t kbps) {
  stage_.note("MP31.BitRate", "=" + std::to_string(kbps));
  stream_.rate = kbps;
}

std::unique_ptr<Mp3Track> FakeEncoder::Stream::begin(std::int32_t) {
  return std::make_unique<Silence>();
}

}  // namespace trackloom::fakes
