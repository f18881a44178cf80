#include "fakes/WriterStage.h"

#include <utility>

#include "runtime/RuntimeError.h"

namespace trackloom::fakes {

WriterStage::WriterStage() : drives{FakeDrive{}}, disc{FakeDisc{}} {}

WriterStage::~WriterStage() = default;

void WriterStage::tell(const std::string& line) const {
  if (onLine) onLine(line);
}

void WriterStage::note(const std::string& call) {
  transcript.push_back(call);
  tell(call);
  if (broken.contains(call)) throw RuntimeError(RuntimeError::DeviceIoError);
}

std::vector<std::string> WriterStage::take() {
  return std::exchange(transcript, {});
}

}  // namespace trackloom::fakes
