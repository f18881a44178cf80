#include "Pages.h"

#include <utility>

#include "Sense.h"

namespace emulated {

namespace {

constexpr std::uint8_t allPages = 0x3F;
constexpr std::uint32_t kilobytesAtOnce = 176;

const Bytes& errorRecovery() {
  static const Bytes page{0x01, 0x0A, 0x00, 0x20, 0, 0, 0, 0, 0, 0, 0, 0};
  return page;
}

/// Of six bytes' commands the allocation stands in one byte.
bool isShort(const Command& command) {
  return command[0] == 0x1A || command[0] == 0x15;
}

/// A host that asks for changeable values gets ones where it may set bits.
Bytes asAsked(Bytes page, std::uint8_t control) {
  const bool changeable = control == 1;
  const bool whole = page[0] == 0x05;
  for (std::size_t i = 2; changeable && i < page.size(); ++i) page[i] = whole ? 0xFF : 0x00;
  return page;
}

}  // namespace

Kind Pages::kind() const {
  switch (write_[4] & 0x0FU) {
    case 0:
      return Kind::Audio;
    case 8:
      return Kind::Mode1;
    case 10:
      return Kind::Mode2;
    default:
      throw CheckCondition{sense::wrongMode};
  }
}

/// MMC-3, 6.3.11: what it reads and writes, its speeds, and a descriptor for each writing speed.
Bytes Pages::capabilities(const Settings& settings) const {
  const std::uint32_t most = settings.speed * kilobytesAtOnce;
  Answer page(32);
  page.put(0, 0x2A, 1)
      .put(2, 0x03, 1)
      .put(3, settings.writesDiscs ? 0x07 : 0x00, 1)
      .put(4, settings.writeGuard ? 0xF1 : 0x71, 1);
  page.put(5, 0x57, 1).put(6, 0x29, 1).put(8, most, 2).put(10, 0x100, 2).put(12, 2048, 2).put(14, most, 2);
  page.put(18, most, 2).put(20, speed(settings) * kilobytesAtOnce, 2).put(28, speed(settings) * kilobytesAtOnce, 2);
  std::uint32_t count = 0;
  for (std::uint32_t multiple = settings.speed; multiple >= 4; multiple /= 2, ++count)
    page.add(0, 2).add(multiple * kilobytesAtOnce, 2);
  return page.put(30, count, 2).length(1, 1).all();
}

Bytes Pages::tell(const Command& command, const Settings& settings) const {
  const auto code = static_cast<std::uint8_t>(command[2] & 0x3FU);
  const auto control = static_cast<std::uint8_t>(command[2] >> 6U);
  require(control != 3, {0x05, 0x39, 0x00});
  Answer answer(isShort(command) ? 4 : 8);
  const std::size_t header = answer.size();
  for (const Bytes& page : {errorRecovery(), write_, capabilities(settings)})
    if (code == allPages || code == page[0]) answer.add(asAsked(page, control));
  require(answer.size() > header, sense::badField);
  return answer.length(0, isShort(command) ? 1 : 2).upTo(isShort(command) ? command[4] : command.number(7, 2));
}

void Pages::take(const Command& command, const Settings& settings) {
  const std::size_t header = isShort(command) ? 4 : 8;
  const std::size_t descriptors = isShort(command) ? numberAt(command.sent, 3, 1) : numberAt(command.sent, 6, 2);
  std::size_t at = header + descriptors;
  while (at + 2 <= command.sent.size()) {
    const std::size_t size = command.sent[at + 1] + 2U;
    require(at + size <= command.sent.size(), sense::lengthError);
    const View page = command.sent.subspan(at, size);
    if ((page[0] & 0x3FU) == 0x05) takeWritePage(page, settings);
    at += size;
  }
}

void Pages::takeWritePage(View page, const Settings& settings) {
  const auto type = static_cast<WriteType>(page[2] & 0x0FU);
  require(type == WriteType::TrackAtOnce || type == WriteType::SessionAtOnce, sense::badParameter);
  require(settings.writeGuard || (page[2] & 0x40U) == 0, sense::badParameter);
  Bytes taken(page.begin(), page.end());
  taken.resize(write_.size());
  taken[0] = 0x05;
  taken[1] = write_[1];
  std::swap(write_, taken);
}

void Pages::setSpeed(std::uint32_t kilobytes, const Settings& settings) {
  const std::uint32_t multiple = (kilobytes + kilobytesAtOnce / 2) / kilobytesAtOnce;
  speed_ = std::clamp(multiple, 1U, settings.speed);
}

}  // namespace emulated
