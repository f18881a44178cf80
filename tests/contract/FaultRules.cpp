#include "contract/WriterContract.h"

namespace trackloom::contract {

using Lines = std::vector<std::string>;
using Place = Fault::Place;

namespace {

/// A place where a cached write of two tracks fails, and what it told just before.
struct Stop {
  Place place;
  std::int32_t block;
  const char* lastLine;
  /// Nothing has touched the disc yet.
  bool untouched;
};

const Stop stops[] = {
    {Place::Cache, 10, "OnTrackCacheStart 1 40", true},    {Place::Cache, 50, "OnTrackCacheStart 2 20", false},
    {Place::Block, 10, "OnTrackWriteStart 1 40", false},   {Place::TrackClosing, 0, "OnTrackClosing 1", false},
    {Place::SessionClosing, 0, "OnSessionClosing", false}, {Place::DiscClosing, 0, "OnDiscClosing", false}};

std::string errorOf(const Fault& fault) {
  const std::int32_t number = fault.code == DeviceError ? fault.number : 0;
  return "OnWriteError " + std::to_string(fault.code) + " " + std::to_string(number);
}

/// Nothing comes behind the error.
void checkLast(WriterWorld& world, const Lines& lines, const Fault& fault) {
  CHECK(lines.back() == errorOf(fault));
  world.runPosted();
  CHECK(world.heard().lines == lines);
  if (fault.code == DeviceError) CHECK(world.real().LastDeviceErrorText().find(fault.words) != std::string::npos);
}

void eachPhaseOfAWriteFails(WriterWorld& world) {
  world.real().SetCacheAudioTracks(true);
  world.real().SetCloseSession(true);
  world.real().SetCloseDisc(true);
  for (const Stop& stop : stops)
    for (const std::int32_t code : {0, 1, 2, 3, 99}) {
      world.insert(5000);
      queueTwoTracks(world);
      const Fault fault{stop.place, stop.block, code, 0x044400, "smoke"};
      world.fail(fault);
      const Lines lines = linesOfWrite(world);
      REQUIRE(lines.size() >= 2);
      CHECK(*(lines.end() - 2) == stop.lastLine);
      checkLast(world, lines, fault);
      CHECK(world.real().DiscStatus() == (stop.untouched ? DiscEmpty : DiscClosed));
      CHECK((world.real().FreeBlocks(AudioBlocks) > 0) == stop.untouched);
    }
}

void theNextDiscIsRight(WriterWorld& world) {
  queueTwoTracks(world);
  const Fault fault{.block = 5};
  world.fail(fault);
  CHECK(linesOfWrite(world).back() == errorOf(fault));
  world.heal();
  world.insert(5000);
  CHECK(linesOfWrite(world).back() == "OnOperationComplete");
  CHECK(world.tracksOnDisc() == 2);
  CHECK(world.real().AudioQueueBlocks() == 60);
}

void anEraseFails(WriterWorld& world) {
  world.insert(5000, true);
  const Fault fault{Place::Erase, 0, DeviceError, 0x044400, "smoke"};
  world.fail(fault);
  const Lines lines = linesOf(world, [&] { CHECK(world.real().EraseDisc(true)); });
  CHECK(lines == Lines{"OnEraseStarted", errorOf(fault)});
  checkLast(world, lines, fault);
  world.heal();
  CHECK(linesOf(world, [&] { CHECK(world.real().EraseDisc(true)); }).back() == "OnEraseComplete");
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

void aClosingFails(WriterWorld& world) {
  queueTwoTracks(world);
  REQUIRE(linesOfWrite(world).back() == "OnOperationComplete");
  for (const Place place : {Place::SessionClosing, Place::DiscClosing}) {
    const Fault fault{place, 0, DeviceError, 0x044400, "smoke"};
    world.fail(fault);
    checkLast(world, linesOf(world, [&] { CHECK(world.real().CloseLastSession(true)); }), fault);
    CHECK(world.real().LastSessionStatus() == SessionIncomplete);
  }
  world.heal();
  CHECK(linesOf(world, [&] { CHECK(world.real().CloseLastSession(true)); }).back() == "OnOperationComplete");
}

void anEjectFails(WriterWorld& world) {
  world.fail({.place = Place::Eject});
  CHECK_FALSE(world.real().EjectDisc());
  CHECK(world.real().MediaLoaded());
  CHECK(world.real().LastDeviceErrorText().find("smoke") != std::string::npos);
  world.heal();
  CHECK(world.real().EjectDisc());
  CHECK_FALSE(world.real().MediaLoaded());
}

}  // namespace

std::vector<Rule> faultRules() {
  return {
      {"A write fails in each of its phases with any code, and nothing is told behind it",
       eachPhaseOfAWriteFails,
       {Ability::Faults}},
      {"Behind a failure the same queue makes the next disc right", theNextDiscIsRight, {}},
      {"An erase that fails tells its begin and its error, and can be done again", anEraseFails, {Ability::Faults}},
      {"A closing that fails leaves the session incomplete", aClosingFails, {Ability::Faults}},
      {"An eject that fails keeps the disc and has words", anEjectFails, {Ability::Faults}},
  };
}

}  // namespace trackloom::contract
