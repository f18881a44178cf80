#include "contract/RipperContract.h"

namespace trackloom::contract {

namespace {

void drivesHaveNames(RipperWorld& world) {
  CDRipperX& ripper = world.ripper();
  REQUIRE(ripper.DeviceCount() == 1);
  CHECK(ripper.DeviceLetter(0).substr(0, 1) == "D");
  CHECK_FALSE(ripper.DeviceVendor(0).empty());
  CHECK_FALSE(ripper.DeviceModel(0).empty());
  for (const std::int16_t none : std::initializer_list<std::int16_t>{-1, 1, 32767}) {
    CHECK(ripper.DeviceLetter(none).empty());
    CHECK(ripper.DeviceVendor(none).empty());
    CHECK(ripper.DeviceModel(none).empty());
    CHECK_FALSE(ripper.SelectRipDrive(none));
  }
}

void refusedDriveSaysWhy(RipperWorld& world) {
  world.refuseDrive();
  CHECK_FALSE(world.ripper().SelectRipDrive(0));
  CHECK(world.ripper().LastDriveError() != 0);
}

void emptyDriveHasNothingToList(RipperWorld& world) {
  world.takeDiscOut();
  REQUIRE(world.ripper().SelectRipDrive(0));
  CHECK_FALSE(world.ripper().DiscPresent());
  CHECK_FALSE(world.ripper().ReadTOC());
  CHECK(world.ripper().TrackCount() == 0);
  CHECK_FALSE(world.ripper().TrackIsAudio(1));
}

void contentsListAllTracks(RipperWorld& world) {
  world.insert({{false, 0, 100}, {true, 250, 30}, {true, 280, 10}});
  CDRipperX& ripper = world.ripper();
  REQUIRE(ripper.SelectRipDrive(0));
  CHECK(ripper.DiscPresent());
  REQUIRE(ripper.ReadTOC());
  REQUIRE(ripper.TrackCount() == 3);
  CHECK_FALSE(ripper.TrackIsAudio(1));
  CHECK(ripper.TrackIsAudio(2));
  CHECK(ripper.TrackIsAudio(3));
  CHECK(ripper.TrackStart(1) == 0);
  CHECK(ripper.TrackStart(2) == 250);
  CHECK(ripper.TrackLength(2) == 30);
  CHECK(ripper.TrackStart(3) == 280);
  CHECK(ripper.TrackLength(3) == 10);
}

void noTrackOutsideOfTheDisc(RipperWorld& world) {
  insertTwoTracks(world);
  for (const std::int16_t none : std::initializer_list<std::int16_t>{-1, 0, 3, 32767}) {
    CHECK_FALSE(world.ripper().TrackIsAudio(none));
    CHECK(world.ripper().TrackLength(none) == 0);
  }
}

void contentsAreTheDiscsOfTheirReading(RipperWorld& world) {
  insertTwoTracks(world);
  world.insert({{true, 0, 77}});
  CHECK(world.ripper().TrackCount() == 2);
  REQUIRE(world.ripper().ReadTOC());
  CHECK(world.ripper().TrackCount() == 1);
  CHECK(world.ripper().TrackLength(1) == 77);
}

void timesOfAnyCount(RipperWorld& world) {
  CDRipperX& ripper = world.ripper();
  CHECK(ripper.SectorsToTime(0) == "00:00:00");
  CHECK(ripper.SectorsToTime(74) == "00:00:74");
  CHECK(ripper.SectorsToTime(75) == "00:01:00");
  CHECK(ripper.SectorsToTime(4500) == "01:00:00");
  CHECK(ripper.SectorsToTime(359849) == "79:57:74");
  CHECK(ripper.SectorsToTime(450000) == "100:00:00");
}

void speedsAreMultiples(RipperWorld& world) {
  insertTwoTracks(world);
  CHECK(world.ripper().MaxSpeed() > 0);
  world.ripper().SetSpeed(4);
  world.ripper().SetSpeed(0);
}

}  // namespace

std::vector<RipRule> ripDriveRules() {
  return {
      {"A drive has a letter and names, and there is none beside the last", drivesHaveNames, {}},
      {"A drive that cannot be taken into use says why", refusedDriveSaysWhy, {}},
      {"An empty drive has no disc and nothing to list", emptyDriveHasNothingToList, {}},
      {"The contents list all tracks of the disc, data too", contentsListAllTracks, {}},
      {"A number outside of the disc is no audio track", noTrackOutsideOfTheDisc, {}},
      {"The contents are those that were read, until they are read again", contentsAreTheDiscsOfTheirReading, {}},
      {"Any count of sectors has its time", timesOfAnyCount, {}},
      {"A drive tells its highest speed and takes any", speedsAreMultiples, {}},
  };
}

}  // namespace trackloom::contract
