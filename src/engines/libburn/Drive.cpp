#include "engines/libburn/Drive.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "engines/disc/Sense.h"
#include "engines/libburn/SenseWords.h"

namespace trackloom::engines::libburn {

namespace {

constexpr std::chrono::milliseconds nap{20};
/// Profiles of GET CONFIGURATION: CD-ROM, CD-R, CD-RW (MMC-3, 5.3.1).
constexpr std::array compactDiscs{0x0008U, 0x0009U, 0x000AU};
constexpr std::uint32_t baseSpeed = kilobytesAtBaseSpeed;
constexpr std::int32_t blocksAtOnce = 16;
constexpr std::size_t writePage = 0x34;
/// How the drive says that a block of 2352 or 2048 bytes follows.
constexpr std::byte audioBlock{0x00};
constexpr std::byte dataBlock{0x08};
constexpr std::byte trackAtOnce{0x01};

std::string textAt(const Reply& reply, std::size_t at, std::size_t size) {
  if (reply.size() < at + size) return {};
  return {reply.begin() + static_cast<std::ptrdiff_t>(at), reply.begin() + static_cast<std::ptrdiff_t>(at + size)};
}

SessionStatusCode stateOfSession(std::uint32_t bits, std::int16_t sessions) {
  if (bits == 1) return SessionIncomplete;
  return sessions == 0 ? SessionEmpty : SessionClosed;
}

DiscTypeCode typeFrom(std::uint32_t code) {
  if (code == DiscTypeCdi || code == DiscTypeXa) return static_cast<DiscTypeCode>(code);
  return DiscTypeCdRom;
}

bool isBlank(const Reply& track) {
  return (numberAt(track, 6, 1) & 0x40U) != 0;
}

DiscTrack trackFrom(const Reply& told) {
  DiscTrack track;
  track.kind = (numberAt(told, 5, 1) & 0x04U) != 0 ? DataBlocks : AudioBlocks;
  track.start = static_cast<std::int32_t>(numberAt(told, 8, 4));
  track.length = static_cast<std::int32_t>(numberAt(told, 24, 4));
  track.session = static_cast<std::int16_t>(numberAt(told, 3, 1));
  return track;
}

std::uint32_t byteOf(std::int32_t number, unsigned place) {
  return static_cast<std::uint32_t>(number) >> 8 * place & 0xFFU;
}

}  // namespace

void Drive::require(std::int32_t sense, const char* what) {
  if (keyOf(sense) > 1) throw driveError(sense, what);
}

DriveIdentity Drive::identity() {
  const Reply told = node_.ask({0x12, 0, 0, 0, 36}, 36, "the drive does not tell what it is");
  const Reply page = capabilities();
  const std::uint32_t speed = (numberAt(page, 18, 2) + baseSpeed / 2) / baseSpeed;
  const bool hasWriteGuard = (numberAt(page, 4, 1) & 0x80U) != 0;
  return {textAt(told, 8, 8), textAt(told, 16, 16), static_cast<std::int16_t>(speed), hasWriteGuard};
}

Reply Drive::capabilities() {
  const Reply told = node_.ask({0x5A, 0x08, 0x2A, 0, 0, 0, 0, 0, 64}, 64, "the drive does not tell what it can do");
  const std::size_t page = std::min<std::size_t>(8 + numberAt(told, 6, 2), told.size());
  return {told.begin() + static_cast<std::ptrdiff_t>(page), told.end()};
}

std::string Drive::serialNumber() {
  try {
    const Reply page = node_.ask({0x12, 1, 0x80, 0, 64}, 64);
    const std::string text = textAt(page, 4, std::min<std::size_t>(numberAt(page, 3, 1), 60));
    return text.substr(0, text.find_last_not_of(' ') + 1);
  } catch (const EngineError&) {
    return {};
  }
}

bool Drive::writesDiscs() {
  return (numberAt(capabilities(), 3, 1) & 0x01U) != 0;
}

bool Drive::hasDisc(std::chrono::milliseconds patience) {
  for (auto waited = std::chrono::milliseconds(0); waited <= patience; waited += nap) {
    const std::int32_t told = node_.sense({0x00});
    if (keyOf(told) <= 1) return true;
    if (keyOf(told) == sensekey::unitAttention) continue;
    if (!isPassing(told)) return false;
    std::this_thread::sleep_for(nap);
  }
  return false;
}

bool Drive::hasCompactDisc() {
  const Reply told = node_.ask({0x46, 0, 0, 0, 0, 0, 0, 0, 8}, 8, "the drive does not tell what kind of disc it has");
  return std::ranges::find(compactDiscs, numberAt(told, 6, 2)) != compactDiscs.end();
}

Reply Drive::trackInformation(std::uint32_t number) {
  return node_.ask({0x52, 1, 0, 0, 0, number, 0, 0, 36}, 36, "the tracks of the disc cannot be read");
}

Reply Drive::tables() {
  Reply all = node_.ask({0x51, 0, 0, 0, 0, 0, 0, 0, 34}, 34, "the disc cannot be read");
  const auto add = [&](CommandBlock block, std::size_t most) {
    try {
      const Reply told = node_.ask(block, most);
      all.insert(all.end(), told.begin(), told.end());
    } catch (const EngineError&) {
      // A blank disc lacks some of them.
      return;
    }
  };
  add({0x52, 1, 0, 0, 0, 0xFF, 0, 0, 36}, 36);
  add({0x43, 0, 0, 0, 0, 0, 0, 0x03, 0x24}, 804);
  return all;
}

std::vector<DiscTrack> Drive::tracksUpTo(std::uint32_t last) {
  std::vector<DiscTrack> tracks;
  for (std::uint32_t number = 1; number <= last; ++number) {
    const Reply told = trackInformation(number);
    if (!isBlank(told)) tracks.push_back(trackFrom(told));
  }
  return tracks;
}

DiscState Drive::disc() {
  DiscState disc;
  disc.status = DiscClosed;
  disc.type = DiscTypeUnknown;
  if (!hasCompactDisc()) return disc;
  const Reply told = node_.ask({0x51, 0, 0, 0, 0, 0, 0, 0, 34}, 34, "the disc cannot be read");
  const std::uint32_t bits = numberAt(told, 2, 1);
  const std::uint32_t lastState = bits >> 2U & 3U;
  const std::uint32_t empty = lastState == 0 ? 1 : 0;
  disc.rewritable = (bits & 0x10U) != 0;
  disc.sessions = static_cast<std::int16_t>(numberAt(told, 4, 1) - empty);
  disc.lastSession = stateOfSession(lastState, disc.sessions);
  disc.type = typeFrom(numberAt(told, 8, 1));
  disc.tracks = tracksUpTo(numberAt(told, 6, 1) - empty);
  const std::uint32_t status = bits & 3U;
  if (status >= 2) return disc;
  disc.status = status == 0 ? DiscEmpty : DiscOpen;
  addRoom(disc);
  return disc;
}

/// A track that takes blocks though some were written to it was cut off.
void Drive::addRoom(DiscState& disc) {
  const Reply next = trackInformation(0xFF);
  const bool writable = (numberAt(next, 7, 1) & 1U) != 0;
  if (!writable || !isBlank(next)) {
    disc.status = DiscClosed;
    return;
  }
  const auto at = static_cast<std::int32_t>(numberAt(next, 12, 4));
  const std::int32_t room = static_cast<std::int32_t>(numberAt(next, 16, 4)) + std::min(0, at);
  disc.nextWritable = std::max(0, at);
  disc.freeAudioBlocks = disc.freeDataBlocks = room;
}

void Drive::prepare(const WriteParameters& parameters) {
  std::array<std::byte, 8 + writePage> list{};
  list[8] = std::byte{0x05};
  list[9] = std::byte{writePage - 2};
  list[10] = trackAtOnce | std::byte(parameters.test ? 0x10 : 0) | std::byte(parameters.guarded ? 0x40 : 0);
  list[11] = std::byte(parameters.nextSession ? 0xC0 : 0) | std::byte(parameters.kind == AudioBlocks ? 0 : 4);
  list[12] = parameters.kind == AudioBlocks ? audioBlock : dataBlock;
  list[22] = std::byte(byteOf(parameters.pause, 1));
  list[23] = std::byte(byteOf(parameters.pause, 0));
  const auto send = [&] {
    return node_.send({0x55, 0x10, 0, 0, 0, 0, 0, 0, static_cast<std::uint32_t>(list.size())}, list);
  };
  std::int32_t told = send();
  for (int turn = 1; turn < 3 && keyOf(told) == sensekey::unitAttention; ++turn) told = send();
  require(told, "the drive cannot write in this way");
}

/// A drive that does not take a speed chooses its own.
void Drive::setSpeed(std::int16_t multiple) {
  const std::uint32_t speed = multiple <= 0 ? 0xFFFF : static_cast<std::uint32_t>(multiple) * baseSpeed;
  node_.sense({0xBB, 0, 0xFF, 0xFF, speed >> 8U, speed & 0xFFU});
}

/// A drive that knows no calibration on request does one by itself.
void Drive::calibrate() {
  const std::int32_t told = node_.sense({0x54, 1});
  if (keyOf(told) == 3 || keyOf(told) == 4) throw driveError(told, "the disc cannot be written");
}

std::int32_t Drive::nextWritable() {
  const Reply told = trackInformation(0xFF);
  if ((numberAt(told, 7, 1) & 1U) == 0) throw deviceError(sense::cannotWriteMedium, "the disc takes no more tracks");
  return static_cast<std::int32_t>(numberAt(told, 12, 4));
}

void Drive::write(std::int32_t block, std::int32_t count, std::span<const std::byte> sectors,
                  const std::function<bool()>& goOn) {
  const auto send = [&] {
    return node_.send({0x2A, 0, byteOf(block, 3), byteOf(block, 2), byteOf(block, 1), byteOf(block, 0), 0,
                       byteOf(count, 1), byteOf(count, 0)},
                      sectors);
  };
  std::int32_t told = send();
  for (; isPassing(told) && goOn(); told = send()) std::this_thread::sleep_for(nap);
  if (!isPassing(told)) require(told, ("writing from block " + std::to_string(block) + " on failed").c_str());
}

std::int16_t Drive::bufferPercent() {
  const Reply told = node_.ask({0x5C, 0, 0, 0, 0, 0, 0, 0, 12}, 12, "the drive does not tell of its buffer");
  const std::uint32_t size = numberAt(told, 4, 4);
  const std::uint32_t left = std::min(numberAt(told, 8, 4), size);
  return size == 0 ? std::int16_t{100} : static_cast<std::int16_t>(std::uint64_t{size - left} * 100 / size);
}

void Drive::awaitIdle(const char* what, const std::function<void()>& waiting) {
  for (std::int32_t told = node_.sense({0x00}); told != 0; told = node_.sense({0x00})) {
    if (!isPassing(told) && keyOf(told) != sensekey::unitAttention) require(told, what);
    waiting();
    std::this_thread::sleep_for(nap);
  }
}

void Drive::closeTrack() {
  require(node_.sense({0x35}), "the track could not be closed");
  awaitIdle("the track could not be closed");
  require(node_.sense({0x5B, 0, 1, 0, 0, 0xFF}), "the track could not be closed");
  awaitIdle("the track could not be closed");
}

void Drive::closeSession() {
  require(node_.sense({0x5B, 0, 2}), "the session could not be closed");
  awaitIdle("the session could not be closed");
}

void Drive::erase(bool quick, const std::function<void()>& waiting) {
  require(node_.sense({0xA1, 0x10U | (quick ? 1U : 0U)}), "the disc could not be erased");
  awaitIdle("the disc could not be erased", waiting);
}

std::vector<std::byte> Drive::read(BlockKind kind, std::int32_t block, std::int32_t count) {
  std::vector<std::byte> sectors;
  for (std::int32_t done = 0; done < count;) {
    const std::int32_t at = block + done;
    const std::int32_t step = std::min(blocksAtOnce, count - done);
    const std::size_t size = static_cast<std::size_t>(step) * bytesOfSector(kind);
    const std::string what = "block " + std::to_string(at) + " cannot be read";
    const Reply told = kind == AudioBlocks ? node_.ask({0xBE, 0x04, byteOf(at, 3), byteOf(at, 2), byteOf(at, 1),
                                                        byteOf(at, 0), 0, 0, static_cast<std::uint32_t>(step), 0x10},
                                                       size, what)
                                           : node_.ask({0x28, 0, byteOf(at, 3), byteOf(at, 2), byteOf(at, 1),
                                                        byteOf(at, 0), 0, 0, static_cast<std::uint32_t>(step)},
                                                       size, what);
    if (told.size() != size) throw deviceError(sense::readError, what + ": the drive gave less");
    std::ranges::transform(told, std::back_inserter(sectors), [](std::uint8_t byte) { return std::byte{byte}; });
    done += step;
  }
  return sectors;
}

void Drive::lockTray(bool locked) {
  node_.sense({0x1E, 0, 0, 0, locked ? 1U : 0U});
}

void Drive::openTray() {
  lockTray(false);
  std::int32_t told = node_.sense({0x1B, 0, 0, 0, 2});
  if (keyOf(told) == sensekey::unitAttention) told = node_.sense({0x1B, 0, 0, 0, 2});
  require(told, "the disc cannot be ejected");
}

}  // namespace trackloom::engines::libburn
