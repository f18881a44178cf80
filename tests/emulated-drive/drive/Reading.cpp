#include "Reading.h"

#include "Address.h"
#include "Sense.h"

namespace emulated {

namespace {

/// Blocks that nobody recorded cannot be read; of an audio track they sound like nothing.
Mark markFor(std::int32_t block, const Disc& disc, const Sectors& sectors) {
  const Track* track = disc.trackAt(block);
  require(track != nullptr, sense::outOfRange);
  const Mark mark = sectors.mark(block);
  require(mark.session != 0 || track->kind == Kind::Audio, sense::unreadable);
  return mark.session != 0
             ? mark
             : Mark{static_cast<std::uint8_t>(track->session), static_cast<std::uint8_t>(track->number), 0, 0};
}

/// CRC-16 of the Q sub-channel, inverted on the disc (IEC 60908, 17.5.1).
std::uint32_t checksum(View bytes) {
  std::uint32_t crc = 0;
  for (const std::uint8_t byte : bytes) {
    crc ^= static_cast<std::uint32_t>(byte) << 8U;
    for (int bit = 0; bit < 8; ++bit)
      crc = (crc & 0x8000U) != 0 ? (crc << 1U ^ 0x1021U) & 0xFFFFU : crc << 1U & 0xFFFFU;
  }
  return ~crc & 0xFFFFU;
}

/// The position as the Q sub-channel has it, formatted in 16 bytes (MMC-3, table 259).
void addPosition(Answer& answer, std::int32_t block, const Mark& mark, const Disc& disc) {
  const auto bcd = [](std::uint32_t number) { return number / 10 << 4U | number % 10; };
  const auto packed = [&](const Msf& at) { return bcd(at.minute) << 16U | bcd(at.second) << 8U | bcd(at.frame); };
  const Track& track = disc.tracks[mark.track - 1U];
  const std::int32_t within = block < track.start ? track.start - block : block - track.start;
  Answer position;
  position.add((mark.control & 0xF0U) | 1U).add(bcd(mark.track)).add(bcd(mark.index));
  position.add(packed(msfOf(within - pregapBlocks)), 3).add(0).add(packed(msfOf(block)), 3);
  answer.add(position.all()).add(checksum(position.all()), 2).add(0, 4);
}

/// Bits of byte 9 of READ CD.
struct Fields {
  bool sync = false;
  bool header = false;
  bool user = false;
  bool correction = false;
  std::size_t errorBytes = 0;
  std::uint32_t subChannel = 0;
};

Fields fieldsOf(const Command& command) {
  const std::uint32_t bits = command[9];
  const std::uint32_t errors = bits >> 1U & 3U;
  const std::size_t errorBytes = errors == 1 ? 294 : errors == 2 ? 296 : 0;
  return {(bits & 0x80U) != 0, (bits & 0x20U) != 0, (bits & 0x10U) != 0,
          (bits & 0x08U) != 0, errorBytes,          command[10] & 7U};
}

void addSector(Answer& answer, const RawSector& raw, const Mark& mark, const Fields& fields) {
  const View all(raw);
  if (mark.kind() == Kind::Audio) {
    if (fields.user) answer.add(all);
    return;
  }
  if (fields.sync) answer.add(all.first(12));
  if (fields.header) answer.add(all.subspan(12, 4));
  if (fields.user) answer.add(all.subspan(16, userBytes));
  if (fields.correction) answer.add(all.subspan(16 + userBytes));
}

void requireType(const Command& command, const Mark& mark) {
  const std::uint32_t expected = command[1] >> 2U & 7U;
  if (expected == 1) require(mark.kind() == Kind::Audio, sense::wrongMode);
  if (expected == 2) require(mark.kind() == Kind::Mode1, sense::wrongMode);
  if (expected > 2) require(mark.kind() == Kind::Mode2, sense::wrongMode);
}

}  // namespace

Bytes blocksOfData(std::int32_t block, std::int32_t count, const Disc& disc, const Sectors& sectors) {
  Answer answer;
  for (std::int32_t at = block; at < block + count; ++at) {
    const Mark mark = markFor(at, disc, sectors);
    require(mark.kind() != Kind::Audio, sense::wrongMode);
    const RawSector raw = sectors.read(at);
    answer.add(View(raw).subspan(16, userBytes));
  }
  return answer.all();
}

Bytes readBlocks(const Command& command, const Disc& disc, const Sectors& sectors) {
  const std::uint32_t count = command[0] == 0xA8 ? command.number(6, 4) : command.number(7, 2);
  return blocksOfData(command.address(2), static_cast<std::int32_t>(count), disc, sectors);
}

Bytes readSectors(const Command& command, const Disc& disc, const Sectors& sectors) {
  const bool msf = command[0] == 0xB9;
  const std::int32_t block = msf ? blockOf(msfAt(command.block, 3)) : command.address(2);
  const std::int32_t end =
      msf ? blockOf(msfAt(command.block, 6)) : block + static_cast<std::int32_t>(command.number(6, 3));
  const Fields fields = fieldsOf(command);
  require(fields.subChannel == 0 || fields.subChannel == 2, sense::badField);
  Answer answer;
  for (std::int32_t at = block; at < end; ++at) {
    const Mark mark = markFor(at, disc, sectors);
    requireType(command, mark);
    addSector(answer, sectors.read(at), mark, fields);
    answer.add(Bytes(fields.errorBytes));
    if (fields.subChannel == 2) addPosition(answer, at, mark, disc);
  }
  return answer.upTo(command.room);
}

}  // namespace emulated
