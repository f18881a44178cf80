#include "Host.h"
#include "drive/Address.h"

namespace emulated {

namespace {

std::uint32_t profile(Host& host) {
  return numberAt(host.ask({0x46, 0, 0, 0, 0, 0, 0, 1, 0}), 6, 2);
}

std::int32_t addressAt(const Bytes& bytes, std::size_t at) {
  return static_cast<std::int32_t>(numberAt(bytes, at, 4));
}

}  // namespace

TEST_CASE("A drive tells its name and the profile of what lies in it") {
  const Rack rack;
  rack.configure("vendor = ACME\nproduct = BURNER 2000\nrevision = 7.1\n");
  Host host(rack);
  const Bytes told = host.ask({0x12, 0, 0, 0, 96});
  CHECK(std::string(told.begin() + 8, told.begin() + 36) == "ACME    BURNER 2000     7.1 ");
  CHECK(profile(host) == 0x0009);
  rack.insert("CD-RW");
  CHECK(profile(host) == 0x000A);
  fs::remove_all(rack.folder() / "disc");
  CHECK(profile(host) == 0x0000);
}

TEST_CASE("A blank disc has room from block 0 on and no table of contents") {
  const Rack rack;
  rack.insert("CD-RW", 20000);
  Host host(rack);
  const Bytes told = host.ask({0x51, 0, 0, 0, 0, 0, 0, 0, 34});
  CHECK(told[2] == 0x10);
  CHECK(told[4] == 1);
  CHECK(host.nextWritable() == 0);
  CHECK(host.freeBlocks() == 20000);
  for (const std::uint32_t format : {0U, 1U, 2U, 5U})
    CHECK(host.send({0x43, 2, format, 0, 0, 0, 0, 0, 255}).sense == sense::badField);
  CHECK(msfAt(host.ask({0x43, 2, 4, 0, 0, 0, 0, 0, 28}), 12).packed() == msfOf(20000).packed());
}

TEST_CASE("Tracks written at once lie 152 blocks apart, and the next sessions 11400 and 6900 behind the lead-out") {
  const Rack rack;
  Host host(rack);
  host.writeTrack(400, Kind::Mode1);
  CHECK(host.nextWritable() == 552);
  host.writeTrack(300, Kind::Mode1);
  CHECK(host.discStates() == 0x05);
  CHECK(host.closeSession() == sense::none);
  CHECK(host.discStates() == 0x01);
  const std::int32_t second = 552 + 302 + 11400;
  CHECK(host.nextWritable() == second);
  host.writeTrack(300, Kind::Mode1);
  CHECK(host.closeSession() == sense::none);
  CHECK(host.nextWritable() == second + 302 + 6900);
  const Bytes toc = host.ask({0x43, 0, 0, 0, 0, 0, 0, 1, 0});
  REQUIRE(toc.size() == 4 + 4 * 8);
  CHECK(addressAt(toc, 8) == 0);
  CHECK(addressAt(toc, 16) == 552);
  CHECK(addressAt(toc, 24) == second);
  CHECK(addressAt(toc, 32) == second + 302);
  CHECK(addressAt(host.ask({0x43, 0, 1, 0, 0, 0, 0, 0, 12}), 8) == second);
}

TEST_CASE("A session written at once has its tracks where the cue sheet says, in all tables alike") {
  const Rack rack;
  Host host(rack);
  host.writeSession({300, 500, 301});
  CHECK(host.discStates() == 0x0E);
  const Bytes toc = host.ask({0x43, 0, 0, 0, 0, 0, 0, 1, 0});
  REQUIRE(toc.size() == 4 + 4 * 8);
  CHECK(addressAt(toc, 16) == 300);
  CHECK(addressAt(toc, 32) == 1101);
  const Bytes full = host.ask({0x43, 2, 2, 0, 0, 0, 0, 1, 0});
  REQUIRE(full.size() == 4 + 6 * 11);
  CHECK(full[4 + 2 * 11 + 3] == 0xA2);
  CHECK(blockOf(msfAt(full, 4 + 2 * 11 + 8)) == 1101);
  CHECK(blockOf(msfAt(full, 4 + 4 * 11 + 8)) == 300);
  const Bytes track = host.ask({0x52, 1, 0, 0, 0, 2, 0, 0, 36});
  CHECK(addressAt(track, 8) == 300);
  CHECK(addressAt(track, 24) == 500);
}

TEST_CASE("A disc that may go on has a pointer to its next session") {
  const Rack rack;
  Host host(rack);
  host.writeSession({300}, true);
  const Bytes full = host.ask({0x43, 2, 2, 0, 0, 0, 0, 1, 0});
  REQUIRE(full.size() == 4 + 6 * 11);
  CHECK(full[4 + 4 * 11 + 3] == 0xB0);
  CHECK(blockOf(msfAt(full, 4 + 4 * 11 + 4)) == 300 + 11250);
  CHECK(host.nextWritable() == 300 + 11400);
}

TEST_CASE("Every sector is kept with its session, its track and its control bits") {
  const Rack rack;
  Host host(rack);
  host.writeTrack(300, Kind::Audio);
  host.writeTrack(310, Kind::Mode1);
  const RawSector audio = rack.sectors().read(299);
  CHECK(Bytes(audio.begin(), audio.end()) == content(299, 1, Kind::Audio));
  CHECK(rack.sectors().mark(299).control == 0x00);
  const Mark data = rack.sectors().mark(452);
  CHECK(data.control == 0x41);
  CHECK(data.track == 2);
  CHECK(data.session == 1);
  CHECK(host.ask({0x28, 0, 0, 0, 1, 0xC5, 0, 0, 1}) == content(453, 1, Kind::Mode1));
  CHECK(rack.sectors().mark(400).session == 0);
}

TEST_CASE("A track of fewer than 300 blocks is filled up when it is closed") {
  const Rack rack;
  Host host(rack);
  host.writeTrack(20, Kind::Audio);
  CHECK(rack.disc().tracks.at(0).end == 302);
  CHECK(host.nextWritable() == 452);
}

TEST_CASE("A disc takes 99 tracks and no more") {
  const Rack rack;
  rack.configure("shortest track = 1\n");
  Host host(rack);
  for (int track = 1; track <= 99; ++track) host.writeTrack(2, Kind::Audio);
  CHECK(rack.disc().tracks.size() == 99);
  CHECK(host.write(host.nextWritable(), 1, Kind::Audio) == sense::noMoreTracks);
}

TEST_CASE("A test changes nothing that is recorded, track or session at once") {
  const Rack rack;
  Host host(rack);
  host.writeTrack(300, Kind::Mode1, true);
  CHECK(host.nextWritable() == 452);
  host.writeTrack(300, Kind::Mode1, true);
  CHECK(host.closeSession() == sense::none);
  CHECK(rack.disc().blank());
  CHECK(host.nextWritable() == 0);
  host.writeSession({300, 300}, false, true);
  CHECK(rack.disc().blank());
  CHECK(host.discStates() == 0x00);
  CHECK_FALSE(fs::exists(rack.folder() / "disc" / "sectors"));
  host.writeSession({300, 300});
  CHECK(host.discStates() == 0x0E);
}

TEST_CASE("A test that is left behind ends when nobody has the drive open") {
  const Rack rack;
  Drive drive(rack.folder());
  Host host(rack);
  host.writeTrack(300, Kind::Mode1, true);
  CHECK(host.send({0x1E, 0, 0, 0, 0}).sense == sense::none);
  CHECK(host.nextWritable() == 0);
}

TEST_CASE("What one process has written another goes on with") {
  const Rack rack;
  {
    Host first(rack);
    REQUIRE(first.parameters(WriteType::TrackAtOnce, Kind::Mode1, true) == sense::none);
    first.writeAll(0, 160, Kind::Mode1);
  }
  Host second(rack);
  CHECK(second.discStates() == 0x05);
  CHECK(second.nextWritable() == 160);
  REQUIRE(second.parameters(WriteType::TrackAtOnce, Kind::Mode1, true) == sense::none);
  second.writeAll(160, 160, Kind::Mode1);
  CHECK(second.closeTrack() == sense::none);
  CHECK(second.closeSession() == sense::none);
  CHECK(second.ask({0x28, 0, 0, 0, 0, 159, 0, 0, 2}) == content(159, 2, Kind::Mode1));
}

TEST_CASE("A session whose writer was killed takes nothing more until it is closed") {
  const Rack rack;
  {
    Host killed(rack);
    REQUIRE(killed.parameters(WriteType::SessionAtOnce, Kind::Audio) == sense::none);
    REQUIRE(killed.cueSheetOf(-150, {400, 400}) == sense::none);
    killed.writeAll(-150, 310, Kind::Audio);
  }
  Host host(rack);
  CHECK(host.discStates() == 0x05);
  CHECK(host.nextWritable() == -1);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Audio) == sense::none);
  CHECK(host.write(160, 1, Kind::Audio) == sense::cannotWrite);
  CHECK(host.closeSession() == sense::none);
  CHECK(host.discStates() == 0x0E);
  CHECK(rack.disc().sessions.at(0).leadOut == 160);
}

TEST_CASE("A rewritable disc is blank once it was erased, and a write-once disc is not erased") {
  const Rack rack;
  rack.insert("CD-RW", 5000);
  Host host(rack);
  host.writeSession({300});
  CHECK(host.blank() == sense::none);
  CHECK(host.discStates() == 0x00);
  CHECK(host.freeBlocks() == 5150);
  CHECK_FALSE(fs::exists(rack.folder() / "disc" / "sectors"));
  rack.insert("CD-R", 5000);
  host.ready();
  CHECK(host.blank() == sense::cannotWrite);
}

TEST_CASE("A reserved track takes what was set aside for it and no block more") {
  const Rack rack;
  Host host(rack);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Mode1, true) == sense::none);
  CHECK(host.send({0x53, 0, 0, 0, 0, 0, 0, 0x01, 0x90}).sense == sense::none);
  host.writeAll(0, 400, Kind::Mode1);
  CHECK(host.write(400, 1, Kind::Mode1) == sense::endOfArea);
  CHECK(host.closeTrack() == sense::none);
  CHECK(host.nextWritable() == 552);
}

TEST_CASE("Texts in the lead-in are read as they were recorded, one turn of them") {
  const Rack rack;
  Host host(rack);
  REQUIRE(host.parameters(WriteType::SessionAtOnce, Kind::Audio) == sense::none);
  REQUIRE(host.cueSheet({{0x01, 0, 0, 0x41, 0, 0, 0, 0},
                         {0x01, 1, 0, 0, 0, 0, 0, 0},
                         {0x01, 1, 1, 0, 0, 0, 2, 0},
                         {0x01, 0xAA, 1, 1, 0, 0, 6, 0}}) == sense::none);
  // Four packs of 18 bytes, six bits to a byte: all bits of the first byte set, all others empty.
  Bytes symbols(96);
  symbols[0] = 0x3F;
  symbols[1] = 0x30;
  symbols[24] = 0x01;
  for (std::uint32_t block = 0; block < 2; ++block)
    CHECK(host.send({0x2A, 0, 0xFF, 0xFF, 0xD0, 0x9C + block, 0, 0, 1}, symbols).sense == sense::none);
  const Bytes told = host.ask({0x43, 0, 5, 0, 0, 0, 0, 1, 0});
  CHECK(told.size() == 4 + 4 * 18);
  CHECK(told[4] == 0xFF);
  CHECK(told[4 + 18] == 0x04);
}

}  // namespace emulated
