#include "Identity.h"

#include <vector>

#include "Sense.h"

namespace emulated {

namespace {

constexpr std::uint32_t profileNone = 0x0000;
constexpr std::uint32_t profileCdRom = 0x0008;
constexpr std::uint32_t profileCdR = 0x0009;
constexpr std::uint32_t profileCdRw = 0x000A;

/// A closed write-once disc counts as a CD-R all the same.
std::uint32_t profileOf(const Disc* disc) {
  if (disc == nullptr) return profileNone;
  return disc->rewritable ? profileCdRw : profileCdR;
}

struct Feature {
  std::uint32_t code = 0;
  std::uint32_t versionBits = 0;
  bool needsDisc = false;
  Bytes data = {};
};

Bytes profiles(const Disc* disc) {
  Answer list;
  for (const std::uint32_t profile : {profileCdRw, profileCdR, profileCdRom})
    list.add(profile, 2).add(disc != nullptr && profile == profileOf(disc) ? 1 : 0).add(0);
  return list.all();
}

std::vector<Feature> featuresOf(const Settings& settings, const Disc* disc) {
  const std::uint8_t guard = settings.writeGuard ? 0x40 : 0x00;
  const Answer serial = Answer(settings.serial.size()).text(0, settings.serial, settings.serial.size());
  return {{0x0000, 0x03, false, profiles(disc)},
          {0x0001, 0x0B, false, {0, 0, 0, 1, 1, 0, 0, 0}},
          {0x0002, 0x07, false, {0x02, 0, 0, 0}},
          {0x0003, 0x03, false, {0x29, 0, 0, 0}},
          {0x0010, 0x00, true, {0, 0, 0x08, 0, 0, 1, 1, 0}},
          {0x001D, 0x01, true, {}},
          {0x001E, 0x08, true, {0x03, 0, 0, 0}},
          {0x0021, 0x08, true, {0, 1, 1, 0}},
          {0x002D, 0x08, true, {static_cast<std::uint8_t>(guard | 0x06U), 0, 0x01, 0x01}},
          {0x002E, 0x00, true, {static_cast<std::uint8_t>(guard | 0x27U), 0, 0x0C, 0x00}},
          {0x0103, 0x02, false, {0x03, 0, 0x01, 0}},
          {0x0105, 0x03, false, {0, 0, 0, 0}},
          {0x0107, 0x10, false, {settings.speedIsTold ? std::uint8_t{0x1B} : std::uint8_t{0x18}, 0, 0, 0}},
          {0x0108, 0x03, false, serial.all()}};
}

Bytes productData(const Command& command, const Settings& settings) {
  Answer page(4);
  page.put(0, 0x05, 1).put(1, command[2], 1);
  require(command[2] == 0x00 || command[2] == 0x80, sense::badField);
  if (command[2] == 0x00) page.add(0x00).add(0x80);
  if (command[2] == 0x80) {
    for (const char letter : settings.serial) page.add(static_cast<std::uint8_t>(letter));
  }
  return page.length(3, 1).upTo(command.number(3, 2));
}

}  // namespace

Bytes inquiry(const Command& command, const Settings& settings) {
  if ((command[1] & 1U) != 0) return productData(command, settings);
  Answer answer(96);
  answer.put(0, 0x05, 1).put(1, 0x80, 1).put(2, 0x05, 1).put(3, 0x02, 1).put(4, 91, 1);
  answer.text(8, settings.vendor, 8).text(16, settings.product, 16).text(32, settings.revision, 4);
  return answer.upTo(command.number(3, 2));
}

Bytes configuration(const Command& command, const Settings& settings, const Disc* disc) {
  const std::uint32_t asked = command.number(2, 2);
  const auto which = command[1] & 0x03U;
  Answer answer(8);
  answer.put(6, settings.profile != 0 ? settings.profile : profileOf(disc), 2);
  for (const Feature& feature : featuresOf(settings, disc)) {
    const bool current = !feature.needsDisc || disc != nullptr;
    if (which == 2 ? feature.code != asked : feature.code < asked || (which == 1 && !current)) continue;
    answer.add(feature.code, 2).add((feature.versionBits & ~1U) | (current ? 1 : 0));
    answer.add(static_cast<std::uint32_t>(feature.data.size())).add(feature.data);
  }
  return answer.length(0, 4).upTo(command.number(7, 2));
}

Bytes performance(const Command& command, const Settings& settings, const Disc* disc) {
  const std::uint32_t type = command[10];
  require(type == 0 || type == 3, sense::badField);
  const auto last = static_cast<std::uint32_t>(disc == nullptr ? 0 : disc->capacity);
  Answer answer(8);
  if (type == 0) {
    answer.add(0, 4).add(settings.speed * 176, 4).add(last, 4).add(settings.speed * 176, 4);
    return answer.length(0, 4).upTo(command.room);
  }
  for (std::uint32_t multiple = settings.speed; multiple >= 4; multiple /= 2)
    answer.add(0, 4).add(last, 4).add(settings.speed * 176, 4).add(multiple * 176, 4);
  return answer.length(0, 4).upTo(command.room);
}

}  // namespace emulated
