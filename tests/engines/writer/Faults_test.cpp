#include <catch2/catch.hpp>

#include "engines/writer/VirtualWorld.h"

namespace trackloom::engines::writer {

using Lines = std::vector<std::string>;

namespace {

/// A recorder that is told to fail, and a queue of two cached tracks.
class FaultWorld : public VirtualWorld {
 public:
  FaultWorld() {
    REQUIRE(real().AddAudioTrack(audioFile("one", 40), 1));
    REQUIRE(real().AddAudioTrack(audioFile("two", 20), 2));
    real().SetCacheAudioTracks(true);
    real().SetCloseSession(true);
    real().SetCloseDisc(true);
  }

  void fault(const std::string& what) const { recorderIni("[faults]\n" + what + "\n"); }
  /// What was told, once the operation has ended.
  const Lines& run(const std::function<void()>& begin) {
    heard().lines.clear();
    begin();
    REQUIRE(queue.runUntil([this] { return heard().ended(); }));
    const Lines told = heard().lines;
    runPosted();
    CHECK(heard().lines == told);
    return heard().lines;
  }
  std::string words() { return real().LastDeviceErrorText() + writers().failureDetail().lastFailure(); }
};

/// Where a write fails, the event before the failure, and what is left of a blank disc.
struct Place {
  std::string fault;
  std::string lastLine;
  DiscStatusCode after;
};

const std::vector<Place>& places() {
  static const std::vector<Place> all{{"failCachingAt = 0", "OnTrackCacheStart 1 40", DiscEmpty},
                                      {"failCachingAt = 39", "OnTrackCacheStart 1 40", DiscEmpty},
                                      {"failCachingAt = 40", "OnTrackCacheStart 2 20", DiscClosed},
                                      {"failCachingAt = 59", "OnTrackCacheStart 2 20", DiscClosed},
                                      {"failTrack = 1", "OnTrackCacheStart 1 40", DiscEmpty},
                                      {"failTrack = 2", "OnTrackCacheStart 2 20", DiscClosed},
                                      {"failWriteAt = 0", "OnTrackWriteStart 1 40", DiscClosed},
                                      {"failWriteAt = 39", "OnTrackWriteStart 1 40", DiscClosed},
                                      {"failWriteAt = 190", "OnTrackWriteStart 2 20", DiscClosed},
                                      {"failClosing = track", "OnTrackClosing 1", DiscClosed},
                                      {"failClosing = session", "OnSessionClosing", DiscClosed},
                                      {"failClosing = disc", "OnDiscClosing", DiscClosed}};
  return all;
}

}  // namespace

TEST_CASE("A write fails where it is told to, with the number and the words it is told") {
  FaultWorld world;
  const auto place = GENERATE(from_range(places()));
  CAPTURE(place.fault);
  world.fault(place.fault + "\nfailNumber = 4/44/00\nfailText = smoke");
  const Lines lines = world.run([&] { world.real().StartWrite(); });
  REQUIRE(lines.size() >= 2);
  CHECK(lines.back() == "OnWriteError 3 " + std::to_string(0x044400));
  CHECK(*(lines.end() - 2) == place.lastLine);
  CHECK(world.real().LastDeviceErrorText() == "smoke (4/44/00)");
  CHECK(world.real().DiscStatus() == place.after);
  CHECK((world.real().FreeBlocks(AudioBlocks) == 0) == (place.after == DiscClosed));
}

TEST_CASE("A write fails with any code, and tells its own words where it has none") {
  FaultWorld world;
  const auto place = GENERATE(from_range(places()));
  CAPTURE(place.fault);
  for (const char* code : {"0", "1", "2", "17", "99"}) {
    world.insert(1000);
    world.fault(place.fault + "\nfailCode = " + code);
    CHECK(world.run([&] { world.real().StartWrite(); }).back() == std::string("OnWriteError ") + code + " 0");
    CHECK_FALSE(world.writers().failureDetail().lastFailure().empty());
  }
}

TEST_CASE("A test fails in the same places but those of a real write, and leaves the disc as it was") {
  FaultWorld world;
  world.real().SetTestMode(true);
  const auto place = GENERATE(from_range(places()));
  CAPTURE(place.fault);
  const bool ofWritesAlone = place.fault.starts_with("failWriteAt");
  world.fault(place.fault);
  const Lines lines = world.run([&] { world.real().StartWrite(); });
  CHECK((lines.back() == "OnOperationComplete") == ofWritesAlone);
  if (ofWritesAlone) {
    world.fault("failTestAt" + place.fault.substr(place.fault.find(' ')));
    const Lines again = world.run([&] { world.real().StartWrite(); });
    CHECK(again.back().starts_with("OnWriteError 3 "));
    CHECK(*(again.end() - 2) == place.lastLine);
  }
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

TEST_CASE("Nothing fails in a cache that is not used, and nothing where no content comes to lie") {
  FaultWorld world;
  const std::string fault = GENERATE("failCachingAt = 0", "failWriteAt = 100", "failTrack = 3", "failErasing = yes");
  world.fault(fault);
  world.real().SetCacheAudioTracks(false);
  CHECK(world.run([&] { world.real().StartWrite(); }).back() == "OnOperationComplete");
}

TEST_CASE("The cache of a data disc fails at its block") {
  FaultWorld world;
  world.real().SetDiscMode(DataBlocks);
  world.real().SetCacheDataTrack(true);
  REQUIRE(world.real().AddDataFile(DiscPath("\\a"), world.plainFile("a", 100 * 2048)));
  world.fault("failCachingAt = 100\nfailCode = 0\nfailText = no memory");
  CHECK(world.run([&] { world.real().StartWrite(); }).back() == "OnWriteError 0 0");
  CHECK(world.writers().failureDetail().lastFailure() == "no memory");
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

TEST_CASE("An erase fails as it is told, and can be done again") {
  FaultWorld world;
  world.insert(1000, true);
  world.real().SetCloseDisc(true);
  REQUIRE(world.wroteWell());
  const std::string code = GENERATE("0", "1", "2", "3", "42");
  world.fault("failErasing = yes\nfailNumber = 4/44/00\nfailText = smoke\nfailCode = " + code);
  const std::string number = code == "3" ? std::to_string(0x044400) : "0";
  CHECK(world.run([&] { CHECK(world.real().EraseDisc(true)); }) ==
        Lines{"OnEraseStarted", "OnWriteError " + code + " " + number});
  CHECK(world.words().find("smoke") != std::string::npos);
  CHECK(world.real().DiscStatus() == DiscClosed);
  world.recorderIni("");
  CHECK(world.run([&] { CHECK(world.real().EraseDisc(false)); }).back() == "OnEraseComplete");
  CHECK(world.real().DiscStatus() == DiscEmpty);
}

TEST_CASE("A closing fails as it is told, and the session stays as it was") {
  FaultWorld world;
  world.real().SetCloseSession(false);
  world.real().SetCloseDisc(false);
  REQUIRE(world.wroteWell());
  const std::string code = GENERATE("0", "1", "2", "3", "42");
  const std::string part = GENERATE("session", "disc");
  world.fault("failClosing = " + part + "\nfailText = smoke\nfailCode = " + code);
  const std::string number = code == "3" ? std::to_string(0x030C00) : "0";
  CHECK(world.run([&] { CHECK(world.real().CloseLastSession(true)); }).back() == "OnWriteError " + code + " " + number);
  CHECK(world.words().find("smoke") != std::string::npos);
  CHECK(world.real().LastSessionStatus() == SessionIncomplete);
  CHECK(world.real().DiscStatus() == DiscOpen);
  world.recorderIni("");
  CHECK(world.run([&] { CHECK(world.real().CloseLastSession(true)); }).back() == "OnOperationComplete");
  CHECK(world.real().DiscStatus() == DiscClosed);
}

TEST_CASE("An eject fails as it is told, and the disc stays") {
  FaultWorld world;
  world.fault("failEjecting = yes\nfailNumber = 4/44/00\nfailText = smoke");
  CHECK_FALSE(world.real().EjectDisc());
  CHECK(world.real().LastDeviceErrorText() == "smoke (4/44/00)");
  CHECK(world.writers().failureDetail().lastFailure() == "smoke (4/44/00)");
  CHECK(world.real().MediaLoaded());
  world.recorderIni("[recorder]\nautomaticFeed = no\n");
  CHECK(world.real().EjectDisc());
  CHECK_FALSE(world.real().MediaLoaded());
}

}  // namespace trackloom::engines::writer
