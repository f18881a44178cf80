#include "engines/libburn/ToldRecorder.h"

#include <algorithm>
#include <catch2/catch.hpp>
#include <utility>

namespace trackloom::engines::libburn {

ToldWrite::ToldWrite(BlockKind kind) : bytes_(bytesOfSector(kind)) {}

ToldWrite::~ToldWrite() = default;

void ToldWrite::beginTrack(std::int16_t track) {
  number_ = track;
  add("begin " + std::to_string(track));
}

void ToldWrite::read(std::span<std::byte> sectors) {
  std::ranges::fill(sectors, static_cast<std::byte>(number_));
  add("read " + std::to_string(sectors.size() / bytes_));
}

std::int16_t ToldWrite::bufferPercent() {
  return 100;
}

void ToldWrite::trackStarted(std::int16_t track, std::int32_t blocks) {
  add("track " + std::to_string(track) + " of " + std::to_string(blocks));
}

void ToldWrite::progress(std::int16_t track, std::int32_t position, std::int16_t percent) {
  bufferPercents.push_back(percent);
  add("progress " + std::to_string(track) + " " + std::to_string(position));
}

void ToldWrite::trackClosing(std::int16_t track) {
  add("closing " + std::to_string(track));
}

void ToldWrite::sessionClosing() {
  add("session");
}

void ToldWrite::discClosing() {
  add("disc");
}

void ToldWrite::erasing() {
  add("erasing");
}

void ToldWrite::add(const std::string& line) {
  lines.push_back(line);
  if (onLine) onLine(line);
}

ToldRecorder::ToldRecorder() {
  REQUIRE(recorder->take());
}

ToldRecorder::~ToldRecorder() = default;

std::string ToldRecorder::commands() {
  const std::string all = drive.commands();
  const std::size_t from = std::exchange(seen_, all.size());
  return all.substr(from);
}

DiscState ToldRecorder::disc() const {
  return recorder->look()->disc.value();
}

}  // namespace trackloom::engines::libburn
