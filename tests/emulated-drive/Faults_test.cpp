#include <chrono>
#include <thread>

#include "Host.h"

namespace emulated {

TEST_CASE("A write fails at the block that the settings name") {
  const Rack rack;
  rack.configure("fault = WRITE 3/0C/00 block 40\n");
  Host host(rack);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Audio) == sense::none);
  host.writeAll(0, 32, Kind::Audio);
  CHECK(host.write(32, 16, Kind::Audio) == sense::writeError);
  CHECK(host.nextWritable() == 32);
  rack.configure("fault = WRITE 3/0C/00 block 4000\n");
  CHECK(host.write(32, 16, Kind::Audio) == sense::none);
}

TEST_CASE("A fault comes so often, and after so many commands, as the settings say") {
  const Rack rack;
  rack.configure("fault = TEST-UNIT-READY 2/04/01 after 1 times 2\n");
  Host host(rack);
  CHECK(host.ready() == sense::none);
  CHECK(host.ready() == sense::becomingReady);
  CHECK(host.ready() == sense::becomingReady);
  CHECK(host.ready() == sense::none);
}

TEST_CASE("Calibration, closing and any other command can fail by their names") {
  const Rack rack;
  rack.configure(
      "fault = SEND-OPC 3/73/03\nfault = CLOSE-TRACK-SESSION 3/72/00\nfault = READ-DISC-INFORMATION 6/29/00 times 1\n");
  Host host(rack);
  CHECK(host.send({0x54, 1}).sense == Sense{0x03, 0x73, 0x03});
  CHECK(host.closeSession() == Sense{0x03, 0x72, 0x00});
  CHECK(host.send({0x51, 0, 0, 0, 0, 0, 0, 0, 34}).sense == Sense{0x06, 0x29, 0x00});
  CHECK(host.discStates() == 0x00);
}

TEST_CASE("A medium that is removed in mid-write lies outside, and its writer is told") {
  const Rack rack;
  rack.configure("fault = WRITE removed block 40\n");
  Host host(rack);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Audio) == sense::none);
  host.writeAll(0, 32, Kind::Audio);
  CHECK(host.write(32, 16, Kind::Audio) == sense::noMedium);
  CHECK(host.ready() == sense::noMedium);
  CHECK(fs::exists(rack.folder() / "out" / "disc"));
}

TEST_CASE("A drive that is unplugged answers no more") {
  const Rack rack;
  rack.configure("fault = * unplugged after 2\n");
  Host host(rack);
  CHECK(host.ready() == sense::none);
  CHECK(host.ready() == sense::none);
  CHECK_THROWS_AS(host.ready(), Unplugged);
  CHECK_THROWS_AS(host.send({0x12, 0, 0, 0, 36}), Unplugged);
}

TEST_CASE("Another disc is told once, by whatever command comes next") {
  const Rack rack;
  Host host(rack);
  CHECK(host.ready() == sense::none);
  rack.insert("CD-RW");
  CHECK(host.send({0x51, 0, 0, 0, 0, 0, 0, 0, 34}).sense == sense::mediumChanged);
  CHECK(host.ready() == sense::none);
  fs::rename(rack.folder() / "disc", rack.folder() / "elsewhere");
  CHECK(host.ready() == sense::noMedium);
  CHECK(host.send({0x4A, 1, 0, 0, 0x10, 0, 0, 0, 8}).data == Bytes{0, 6, 4, 0x10, 3, 0, 0, 0});
  CHECK(host.send({0x4A, 1, 0, 0, 0x10, 0, 0, 0, 8}).data == Bytes{0, 6, 4, 0x10, 0, 0, 0, 0});
}

TEST_CASE("The tray opens and closes, unless it is locked or stuck") {
  const Rack rack;
  Host host(rack);
  CHECK(host.send({0x1E, 0, 0, 0, 1}).sense == sense::none);
  CHECK(host.send({0x1B, 0, 0, 0, 2}).sense == sense::removalPrevented);
  CHECK(host.send({0x1E, 0, 0, 0, 0}).sense == sense::none);
  CHECK(host.send({0x1B, 0, 0, 0, 2}).sense == sense::none);
  CHECK(host.ready() == sense::noMedium);
  CHECK(host.send({0x1B, 0, 0, 0, 3}).sense == sense::none);
  CHECK(host.ready() == sense::none);
  rack.configure("tray stuck = yes\n");
  CHECK(host.send({0x1B, 0, 0, 0, 2}).sense == sense::trayStuck);
  CHECK(host.ready() == sense::none);
}

TEST_CASE("An erase in the background keeps the drive busy and tells how far it is") {
  const Rack rack;
  rack.insert("CD-RW");
  rack.configure("erase time = 60000\n");
  Host host(rack);
  CHECK(host.send({0xA1, 0x11}).sense == sense::none);
  CHECK(host.ready() == sense::operationInProgress);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const Outcome waiting = host.send({0x00});
  CHECK(waiting.progress > 0);
  CHECK(host.send({0x03, 0, 0, 0, 18}).data[13] == 0x07);
  CHECK(host.send({0x12, 0, 0, 0, 36}).sense == sense::none);
}

TEST_CASE("A paced write takes as long as its blocks do") {
  const Rack rack;
  rack.configure("pace = 1000\n");
  Host host(rack);
  REQUIRE(host.parameters(WriteType::TrackAtOnce, Kind::Audio) == sense::none);
  const auto begin = std::chrono::steady_clock::now();
  host.writeAll(0, 48, Kind::Audio);
  CHECK(std::chrono::steady_clock::now() - begin >= std::chrono::milliseconds(48));
}

TEST_CASE("Each command stands in the log with its sense") {
  const Rack rack;
  Host host(rack);
  host.ready();
  host.send({0x28, 0, 0, 0, 0, 5, 0, 0, 1});
  CHECK(rack.commands() ==
        "TEST-UNIT-READY 00 00 00 00 00 00 00 00 00 00 00 00 -> 00/00/00\n"
        "READ 28 00 00 00 00 05 00 00 01 00 00 00 -> 05/21/00\n");
}

}  // namespace emulated
