#include "Host.h"

#include <cstdio>

#include "drive/Address.h"

namespace emulated {

namespace {

Command commandOf(Block block) {
  Command command;
  std::size_t at = 0;
  for (const std::uint32_t byte : block) command.block[at++] = static_cast<std::uint8_t>(byte);
  return command;
}

}  // namespace

Bytes content(std::int32_t block, std::int32_t count, Kind kind) {
  Bytes bytes;
  for (std::int32_t at = block; at < block + count; ++at) {
    const std::string sector = trackloom::fakes::noise(bytesOf(kind), static_cast<std::size_t>(at + 1000));
    bytes.insert(bytes.end(), sector.begin(), sector.end());
  }
  return bytes;
}

Outcome Host::send(Block block, View sent, std::size_t room) {
  Command command = commandOf(block);
  command.sent = sent;
  command.room = room;
  return drive_.run(command);
}

Bytes Host::ask(Block block, std::size_t room) {
  const Outcome outcome = send(block, {}, room);
  CHECK(outcome.sense == sense::none);
  return outcome.data;
}

Sense Host::parameters(WriteType type, Kind kind, bool next, bool test) {
  Answer list(8 + 0x34);
  list.put(8, 0x05, 1).put(9, 0x32, 1);
  list.put(10, static_cast<std::uint32_t>(type) | (test ? 0x10U : 0U), 1);
  list.put(11, (next ? 0xC0U : 0U) | (kind == Kind::Audio ? 0U : 4U), 1).put(12, kind == Kind::Audio ? 0 : 8, 1);
  return send({0x55, 0x10, 0, 0, 0, 0, 0, 0, 0x3C}, list.all()).sense;
}

Sense Host::write(std::int32_t block, std::int32_t count, Kind kind) {
  const auto at = static_cast<std::uint32_t>(block);
  const auto blocks = static_cast<std::uint32_t>(count);
  return send({0x2A, 0, at >> 24U, at >> 16U & 0xFFU, at >> 8U & 0xFFU, at & 0xFFU, 0, blocks >> 8U, blocks & 0xFFU},
              content(block, count, kind))
      .sense;
}

void Host::writeAll(std::int32_t block, std::int32_t count, Kind kind) {
  for (std::int32_t done = 0; done < count; done += 16)
    REQUIRE(write(block + done, std::min(16, count - done), kind) == sense::none);
}

Sense Host::cueSheet(const std::vector<std::vector<std::uint32_t>>& entries) {
  Answer sheet;
  for (const auto& entry : entries)
    for (const std::uint32_t byte : entry) sheet.add(byte);
  return send({0x5D, 0, 0, 0, 0, 0, 0, 0, static_cast<std::uint32_t>(sheet.size())}, sheet.all()).sense;
}

Sense Host::cueSheetOf(std::int32_t begin, const std::vector<std::int32_t>& lengths, Kind kind) {
  const std::uint32_t control = kind == Kind::Audio ? 0x01 : 0x41;
  const std::uint32_t form = kind == Kind::Audio ? 0x00 : 0x10;
  std::vector<std::vector<std::uint32_t>> sheet{{0x01, 0, 0, 0x01, 0, 0, 0, 0}};
  const auto add = [&](std::uint32_t track, std::uint32_t index, std::int32_t block) {
    const Msf at = msfOf(block);
    sheet.push_back({control, track, index, form, 0, at.minute, at.second, at.frame});
  };
  add(1, 0, begin);
  std::int32_t block = begin + pregapBlocks;
  for (std::size_t i = 0; i < lengths.size(); block += lengths[i++]) add(static_cast<std::uint32_t>(i) + 1, 1, block);
  add(0xAA, 1, block);
  return cueSheet(sheet);
}

std::int32_t Host::nextWritable() {
  const Bytes told = ask({0x52, 1, 0, 0, 0, 0xFF, 0, 0, 36});
  return (told[7] & 1U) == 0 ? -1 : static_cast<std::int32_t>(numberAt(told, 12, 4));
}

std::int32_t Host::freeBlocks() {
  return static_cast<std::int32_t>(numberAt(ask({0x52, 1, 0, 0, 0, 0xFF, 0, 0, 36}), 16, 4));
}

std::uint32_t Host::discStates() {
  return ask({0x51, 0, 0, 0, 0, 0, 0, 0, 34})[2] & 0x0FU;
}

void Host::writeSession(const std::vector<std::int32_t>& lengths, bool next, bool test) {
  REQUIRE(parameters(WriteType::SessionAtOnce, Kind::Audio, next, test) == sense::none);
  const std::int32_t start = nextWritable();
  const std::int32_t begin = start < 0 ? start : start - pregapBlocks;
  REQUIRE(cueSheetOf(begin, lengths) == sense::none);
  std::int32_t count = pregapBlocks;
  for (const std::int32_t length : lengths) count += length;
  writeAll(begin, count, Kind::Audio);
  REQUIRE(synchronize() == sense::none);
}

void Host::writeTrack(std::int32_t count, Kind kind, bool test) {
  REQUIRE(parameters(WriteType::TrackAtOnce, kind, true, test) == sense::none);
  writeAll(nextWritable(), count, kind);
  REQUIRE(synchronize() == sense::none);
}

}  // namespace emulated

std::string Catch::StringMaker<emulated::Sense>::convert(const emulated::Sense& sense) {
  char text[16];
  std::snprintf(text, sizeof text, "%X/%02X/%02X", sense.key, sense.code, sense.qualifier);
  return text;
}
