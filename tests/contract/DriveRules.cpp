#include "contract/WriterContract.h"

namespace trackloom::contract {

namespace {

/// What an instance answers while it has no drive, or its drive no disc.
void checkNoDisc(CDWriterXP& writer) {
  CHECK_FALSE(writer.MediaLoaded());
  CHECK_FALSE(writer.DiscRewritable());
  CHECK(writer.DiscStatus() == DiscStatusUnknown);
  CHECK(writer.DiscType() == DiscTypeUnknown);
  CHECK(writer.SessionCount() == 0);
  CHECK(writer.LastSessionStatus() == SessionEmpty);
  CHECK(writer.FreeBlocks(AudioBlocks) == 0);
  CHECK(writer.FreeBlocks(DataBlocks) == 0);
}

void checkNoDrive(CDWriterXP& writer) {
  checkNoDisc(writer);
  CHECK(writer.MaxWriteSpeed() == 0);
  CHECK_FALSE(writer.HasWriteGuard());
  CHECK_FALSE(writer.EjectDisc());
}

void driveNamesEndWithTheDrives(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  CHECK(writer.DriveCount() == 1);
  CHECK(writer.DriveLetter(0).size() == 1);
  CHECK_FALSE(writer.DriveVendor(0).empty());
  CHECK_FALSE(writer.DriveProduct(0).empty());
  for (const std::int16_t none : std::initializer_list<std::int16_t>{-1, 1, 32767}) {
    CHECK(writer.DriveLetter(none).empty());
    CHECK(writer.DriveVendor(none).empty());
    CHECK(writer.DriveProduct(none).empty());
  }
}

void unknownDriveLeavesNone(WriterWorld& world) {
  CHECK(world.real().MediaLoaded());
  CHECK(world.real().MaxWriteSpeed() > 0);
  for (const std::int16_t none : std::initializer_list<std::int16_t>{-1, 1, 32767}) {
    CHECK_FALSE(world.real().SelectDrive(none));
    checkNoDrive(world.real());
    CHECK(world.real().SelectDrive(0));
    CHECK(world.real().MediaLoaded());
  }
}

void refusedDriveLeavesNone(WriterWorld& world) {
  world.refuse(true, false);
  CHECK_FALSE(world.real().SelectDrive(0));
  checkNoDrive(world.real());
  world.refuse(false, false);
  CHECK(world.real().SelectDrive(0));
  CHECK(world.real().MediaLoaded());
}

void scratchInstanceHasNoDrive(WriterWorld& world) {
  checkNoDrive(world.scratch());
}

void discIsSeenAsItLies(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  world.takeDiscOut();
  checkNoDisc(writer);
  CHECK(writer.MaxWriteSpeed() > 0);
  world.insert(1000, true);
  CHECK(writer.MediaLoaded());
  CHECK(writer.DiscRewritable());
  CHECK(writer.FreeBlocks(AudioBlocks) == 1000);
  world.insert(2000);
  CHECK_FALSE(writer.DiscRewritable());
  CHECK(writer.FreeBlocks(DataBlocks) == 2000);
}

void blankDiscIsEmpty(WriterWorld& world) {
  CHECK(world.real().DiscStatus() == DiscEmpty);
  CHECK(world.real().LastSessionStatus() == SessionEmpty);
  CHECK(world.real().SessionCount() == 0);
  CHECK_FALSE(world.real().DiscRewritable());
  CHECK(world.real().FreeBlocks(AudioBlocks) == 359849);
  CHECK(world.real().FreeBlocks(DataBlocks) == 359849);
}

void ejectEmptiesTheDrive(WriterWorld& world) {
  world.takeDiscOut();
  world.insert(1000);
  CHECK(world.real().EjectDisc());
  checkNoDisc(world.real());
  world.insert(500);
  CHECK(world.real().FreeBlocks(AudioBlocks) == 500);
}

void stuckTrayKeepsTheDisc(WriterWorld& world) {
  world.refuse(false, true);
  CHECK_FALSE(world.real().EjectDisc());
  CHECK(world.real().MediaLoaded());
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

void guardAndSpeedAreStored(WriterWorld& world) {
  CDWriterXP& writer = world.real();
  const std::int16_t most = writer.MaxWriteSpeed();
  const bool guard = writer.HasWriteGuard();
  for (const bool on : {true, false}) writer.EnableWriteGuard(on);
  for (const std::int16_t speed : std::initializer_list<std::int16_t>{1, most, 32767, 0, -1}) {
    writer.SetWriteSpeed(speed);
    CHECK(writer.MaxWriteSpeed() == most);
    CHECK(writer.HasWriteGuard() == guard);
    queueTwoTracks(world);
    CHECK(linesOfWrite(world).back() == "OnOperationComplete");
  }
  world.scratch().EnableWriteGuard(true);
  world.scratch().SetWriteSpeed(8);
}

void discTypeIsThatOfOrdinaryDiscs(WriterWorld& world) {
  CHECK(world.real().DiscType() == DiscTypeCdRom);
  queueTwoTracks(world);
  REQUIRE(linesOfWrite(world).back() == "OnOperationComplete");
  CHECK(world.real().DiscType() == DiscTypeCdRom);
}

void bytesAreThoseOfTheKind(WriterWorld& world) {
  CDWriterXP& writer = world.scratch();
  CHECK(writer.BlocksToBytes(359849, AudioBlocks) == 846364848);
  CHECK(writer.BlocksToBytes(359849, DataBlocks) == 736970752);
  CHECK(writer.BlocksToBytes(0, DataBlocks) == 0);
  CHECK(writer.BlocksToBytes(1048575, DataBlocks) == 2147481600);
  CHECK(writer.BlocksToBytes(1048576, DataBlocks) == 2147483647);
  CHECK(writer.BlocksToBytes(1000000, AudioBlocks) == 2147483647);
}

}  // namespace

void shortTimesBeginWithNought(WriterWorld& world) {
  CDWriterXP& writer = world.scratch();
  CHECK(writer.BlocksToTime(44999) == "09:59:74");
  CHECK(writer.BlocksToTime(0) == "00:00:00");
  CHECK(writer.BlocksToTime(45000) == "10:00:00");
  CHECK(writer.BlocksToTime(450075) == "100:01:00");
  CHECK(writer.BlocksToTime(-1) == "00:00:00");
}

std::vector<Rule> driveRules() {
  return {
      {"A drive that is not there has no names", driveNamesEndWithTheDrives, {}},
      {"A drive number that is not there leaves no drive in use", unknownDriveLeavesNone, {}},
      {"A drive that refuses leaves none in use", refusedDriveLeavesNone, {}},
      {"An instance that has selected no drive has none", scratchInstanceHasNoDrive, {}},
      {"The disc is the one that lies in the drive at the moment of the call", discIsSeenAsItLies, {}},
      {"A blank disc has no session and all its room, for either kind", blankDiscIsEmpty, {}},
      {"An eject leaves the drive empty until a disc is put in", ejectEmptiesTheDrive, {}},
      {"A stuck tray answers False and keeps the disc", stuckTrayKeepsTheDisc, {}},
      {"Write guard and speed are taken as they come, and keep no write from the disc", guardAndSpeedAreStored, {}},
      {"An ordinary disc is of the ordinary type, blank or recorded", discTypeIsThatOfOrdinaryDiscs, {}},
      {"Bytes are counted by the kind, and stop at the largest number", bytesAreThoseOfTheKind, {}},
      {"Times have two digits each, and minutes as many as they need", shortTimesBeginWithNought, {}},
  };
}

}  // namespace trackloom::contract
