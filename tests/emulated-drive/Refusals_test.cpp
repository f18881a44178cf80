#include "Host.h"
#include "drive/Address.h"

namespace emulated {

TEST_CASE("A write anywhere but at the next writable block is refused") {
  const Rack rack;
  Host host(rack);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Mode1, true) == sense::none);
  CHECK(host.write(1, 1, Kind::Mode1) == sense::notNextWritable);
  host.writeAll(0, 16, Kind::Mode1);
  CHECK(host.write(17, 1, Kind::Mode1) == sense::notNextWritable);
  CHECK(host.write(0, 1, Kind::Mode1) == sense::notNextWritable);
  CHECK(host.write(16, 1, Kind::Mode1) == sense::none);
}

TEST_CASE("Blocks of another kind than the write parameters say are refused") {
  const Rack rack;
  Host host(rack);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Mode1) == sense::none);
  CHECK(host.write(0, 1, Kind::Audio) == sense::wrongMode);
  host.writeAll(0, 16, Kind::Mode1);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Audio) == sense::none);
  CHECK(host.write(16, 1, Kind::Audio) == sense::wrongMode);
}

TEST_CASE("A session at once needs a cue sheet, and the sheet its write type") {
  const Rack rack;
  Host host(rack);
  REQUIRE(host.parameters(WriteType::SessionAtOnce, Kind::Audio) == sense::none);
  CHECK(host.write(-150, 1, Kind::Audio) == sense::badSequence);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Audio) == sense::none);
  CHECK(host.cueSheetOf(-150, {300}) == sense::badSequence);
}

TEST_CASE("A cue sheet that this disc cannot become is refused") {
  const Rack rack;
  rack.insert("CD-R", 5000);
  Host host(rack);
  REQUIRE(host.parameters(WriteType::SessionAtOnce, Kind::Audio) == sense::none);
  CHECK(host.cueSheetOf(-150, {299}) == sense::badParameter);
  CHECK(host.cueSheetOf(0, {300}) == sense::badParameter);
  CHECK(host.cueSheetOf(-150, {4000, 1001}) == sense::badParameter);
  CHECK(host.cueSheetOf(-150, {4000, 1000}) == sense::none);
  // Without a lead-out, with a track left out, and data that call themselves audio.
  CHECK(host.cueSheet({{1, 0, 0, 1, 0, 0, 0, 0}, {1, 1, 0, 0, 0, 0, 0, 0}, {1, 1, 1, 0, 0, 0, 2, 0}}) ==
        sense::badParameter);
  CHECK(host.cueSheet({{1, 0, 0, 1, 0, 0, 0, 0},
                       {1, 2, 0, 0, 0, 0, 0, 0},
                       {1, 2, 1, 0, 0, 0, 2, 0},
                       {1, 0xAA, 1, 1, 0, 0, 6, 0}}) == sense::badParameter);
  CHECK(host.cueSheet({{1, 0, 0, 1, 0, 0, 0, 0},
                       {1, 1, 0, 0x10, 0, 0, 0, 0},
                       {1, 1, 1, 0x10, 0, 0, 2, 0},
                       {1, 0xAA, 1, 1, 0, 0, 6, 0}}) == sense::badParameter);
}

TEST_CASE("A session at once takes its blocks in order and none behind its lead-out") {
  const Rack rack;
  Host host(rack);
  REQUIRE(host.parameters(WriteType::SessionAtOnce, Kind::Audio) == sense::none);
  REQUIRE(host.cueSheetOf(-150, {300}) == sense::none);
  CHECK(host.write(0, 1, Kind::Audio) == sense::notNextWritable);
  CHECK(host.write(-150, 1, Kind::Mode1) == sense::wrongMode);
  host.writeAll(-150, 450, Kind::Audio);
  CHECK(host.write(300, 1, Kind::Audio) == sense::outOfRange);
}

TEST_CASE("A closed disc takes neither tracks nor sessions nor calibrations") {
  const Rack rack;
  Host host(rack);
  host.writeSession({300});
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Audio) == sense::none);
  CHECK(host.write(300, 1, Kind::Audio) == sense::cannotWrite);
  CHECK(host.closeSession() == sense::cannotWrite);
  CHECK(host.send({0x54, 1}).sense == sense::cannotWrite);
  CHECK(host.send({0x53, 0, 0, 0, 0, 0, 0, 1, 0x90}).sense == sense::cannotWrite);
  CHECK(host.send({0x52, 1, 0, 0, 0, 0xFF, 0, 0, 36}).sense == sense::badField);
}

TEST_CASE("A session is not closed while a track of it is open, nor one that is not there") {
  const Rack rack;
  Host host(rack);
  CHECK(host.closeSession() == sense::badSequence);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Mode1, true) == sense::none);
  host.writeAll(0, 16, Kind::Mode1);
  CHECK(host.closeSession() == sense::incompleteTrack);
  CHECK(host.closeTrack() == sense::none);
  CHECK(host.closeSession() == sense::none);
}

TEST_CASE("A disc ends at its capacity") {
  const Rack rack;
  rack.insert("CD-R", 320);
  Host host(rack);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Audio) == sense::none);
  host.writeAll(0, 320, Kind::Audio);
  CHECK(host.write(320, 1, Kind::Audio) == sense::endOfArea);
}

TEST_CASE("Packets, raw sectors and unknown commands are refused") {
  const Rack rack;
  Host host(rack);
  CHECK(host.parameters(WriteType::Packet, Kind::Mode1) == sense::badParameter);
  CHECK(host.parameters(WriteType::Raw, Kind::Audio) == sense::badParameter);
  CHECK(host.send({0xA3}).sense == sense::unknownCommand);
  CHECK(host.send({0x5A, 0, 0x0D, 0, 0, 0, 0, 0, 64}).sense == sense::badField);
  rack.configure("write guard = no\n");
  Answer guarded(8 + 0x34);
  guarded.put(8, 0x05, 1).put(9, 0x32, 1).put(10, 0x41, 1);
  CHECK(host.send({0x55, 0x10, 0, 0, 0, 0, 0, 0, 0x3C}, guarded.all()).sense == sense::badParameter);
}

TEST_CASE("Reads of another kind, of nothing and of the run-out are refused") {
  const Rack rack;
  Host host(rack);
  host.writeTrack(300, Kind::Audio);
  host.writeTrack(300, Kind::Mode1);
  CHECK(host.closeSession() == sense::none);
  CHECK(host.send({0x28, 0, 0, 0, 0, 0, 0, 0, 1}).sense == sense::wrongMode);
  CHECK(host.send({0xBE, 0x08, 0, 0, 0, 0, 0, 0, 1, 0x10}).sense == sense::wrongMode);
  CHECK(host.send({0xBE, 0x04, 0, 0, 1, 0xC4, 0, 0, 1, 0x10}).sense == sense::wrongMode);
  CHECK(host.send({0x28, 0, 0, 0, 2, 0xF0, 0, 0, 1}).sense == sense::unreadable);
  CHECK(host.send({0x28, 0, 0, 0, 9, 0, 0, 0, 1}).sense == sense::outOfRange);
  // The run-out of an audio track sounds like nothing.
  CHECK(host.ask({0xBE, 0x04, 0, 0, 1, 0x2C, 0, 0, 1, 0x10}) == Bytes(2352));
}

TEST_CASE("A sector is read with all the fields that are asked for") {
  const Rack rack;
  Host host(rack);
  host.writeTrack(300, Kind::Mode1);
  const Bytes raw = host.ask({0xBE, 0, 0, 0, 0, 5, 0, 0, 1, 0xF8, 2});
  REQUIRE(raw.size() == 2352 + 16);
  CHECK(numberAt(raw, 0, 4) == 0x00FFFFFF);
  CHECK(numberAt(raw, 12, 4) == 0x00020501);
  CHECK(Bytes(raw.begin() + 16, raw.begin() + 16 + 2048) == content(5, 1, Kind::Mode1));
  // Control and address, track, index, minutes to frames within the track, then those of the disc.
  CHECK(numberAt(raw, 2352, 4) == 0x41010100);
  CHECK(numberAt(raw, 2352 + 4, 4) == 0x00050000);
  CHECK(numberAt(raw, 2352 + 8, 2) == 0x0205);
  CHECK(host.ask({0xB9, 0, 0, 0, 2, 5, 0, 2, 7, 0x10}).size() == 2 * 2048);
}

}  // namespace emulated
