#include "fakes/RipperStage.h"

#include <utility>

#include "runtime/RuntimeError.h"

namespace trackloom::fakes {

RipperStage::RipperStage() : drives{FakeRipDrive{}} {}

RipperStage::~RipperStage() = default;

void RipperStage::note(const std::string& call, const std::string& arguments) {
  transcript.push_back(call + arguments);
  if (onLine) onLine(transcript.back());
  breakAt(call);
}

void RipperStage::breakAt(const std::string& call) const {
  if (broken.contains(call)) throw RuntimeError(RuntimeError::DeviceIoError);
}

std::vector<std::string> RipperStage::take() {
  return std::exchange(transcript, {});
}

}  // namespace trackloom::fakes
