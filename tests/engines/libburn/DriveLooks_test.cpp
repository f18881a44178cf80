#include <catch2/catch.hpp>

#include "engines/ground/EngineError.h"
#include "engines/libburn/Drive.h"
#include "engines/libburn/ScriptedDrive.h"

namespace trackloom::engines::libburn {

using Catch::Matchers::StartsWith;
using std::chrono::milliseconds;
using Notes = std::vector<std::string>;

namespace {

/// So many bytes, all of which are `around` but those that are named.
Reply filled(std::size_t size, std::uint8_t around, const std::vector<std::pair<std::size_t, std::uint8_t>>& bytes) {
  Reply reply(size, around);
  for (const auto& [at, byte] : bytes) reply.at(at) = byte;
  return reply;
}

void putNumber(Reply& reply, std::size_t at, std::uint32_t number) {
  for (std::size_t i = 0; i < 4; ++i) reply.at(at + i) = static_cast<std::uint8_t>(number >> 8 * (3 - i));
}

/// MODE SENSE: eight bytes of header, as many of a descriptor, page 2A with what is named in it.
Answer page(std::uint8_t around, const std::vector<std::pair<std::size_t, std::uint8_t>>& bytes) {
  Reply reply = filled(16, 0xFF, {{6, 0}, {7, 8}});
  const Reply told = filled(32, around, bytes);
  reply.insert(reply.end(), told.begin(), told.end());
  return {.bytes = reply};
}

Answer inquiry(std::size_t size = 36) {
  const std::string text =
      "\x05\x80\x05\x02\x5B???VENDOR12PRODUCT 34567890"
      "1.00";
  return {.bytes = Reply(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size))};
}

struct LookedAt {
  ScriptedDrive scripted;
  Drive drive{scripted.path(), Hold::Shared};

  template <class Deed>
  std::string failureOf(const Deed& deed) {
    try {
      deed();
    } catch (const EngineError& error) {
      return error.words();
    }
    return "";
  }
};

const std::string askInformation = "51 00 00 00 00 00 00 00 22 00 <34";
const std::string askConfiguration = "46 00 00 00 00 00 00 00 08 00 <8";

std::string askTrack(const std::string& number) {
  return "52 01 00 00 00 " + number + " 00 00 24 00 <36";
}

Answer profile(std::uint8_t high, std::uint8_t low) {
  return {.bytes = filled(8, 0xFF, {{6, high}, {7, low}})};
}

struct Information {
  std::uint8_t bits;
  std::uint8_t sessions;
  std::uint8_t lastTrack;
  std::uint8_t type;
};

Answer information(const Information& told) {
  return {.bytes = filled(34, 0xFF, {{2, told.bits}, {4, told.sessions}, {6, told.lastTrack}, {8, told.type}})};
}

/// A track, or the next one: whether it is blank, can be written, what comes next and the room there.
Answer next(bool blank, bool writable, std::int32_t at, std::int32_t room) {
  const std::uint8_t blankBits = blank ? 0x40 : 0xBF;
  const std::uint8_t writableBits = writable ? 0x01 : 0xFE;
  Reply reply = filled(36, 0xFF, {{6, blankBits}, {7, writableBits}});
  putNumber(reply, 12, static_cast<std::uint32_t>(at));
  putNumber(reply, 16, static_cast<std::uint32_t>(room));
  return {.bytes = reply};
}

Answer track(std::uint8_t session, std::uint8_t control, std::uint32_t start, std::uint32_t length) {
  Reply reply = filled(36, 0xFF, {{3, session}, {5, control}, {6, 0xBF}});
  putNumber(reply, 8, start);
  putNumber(reply, 24, length);
  return {.bytes = reply};
}

}  // namespace

TEST_CASE("A drive tells its names, its speed and its guard, each at its place") {
  LookedAt at;
  // 48 times 176 kilobytes a second, less half of that.
  at.scripted.answer({inquiry(), page(0x00, {{4, 0x80}, {18, 0x20}, {19, 0xA8}})});
  const DriveIdentity most = at.drive.identity();
  CHECK(at.scripted.notes() == Notes{"12 00 00 00 24 00 <36", "5A 08 2A 00 00 00 00 00 40 00 <64"});
  CHECK(most.vendor == "VENDOR12");
  CHECK(most.product == "PRODUCT 34567890");
  CHECK(most.maxWriteSpeed == 48);
  CHECK(most.hasWriteGuard);
  at.scripted.answer({inquiry(), page(0xFF, {{4, 0x7F}, {18, 0x20}, {19, 0xA7}})});
  const DriveIdentity less = at.drive.identity();
  CHECK(less.maxWriteSpeed == 47);
  CHECK_FALSE(less.hasWriteGuard);
}

TEST_CASE("A drive that tells less of its names has those that it tells whole") {
  LookedAt at;
  for (const auto& [size, vendor, product] : std::vector<std::tuple<std::size_t, std::string, std::string>>{
           {32, "VENDOR12", "PRODUCT 34567890"}, {31, "VENDOR12", ""}, {16, "VENDOR12", ""}, {15, "", ""}}) {
    at.scripted.answer({inquiry(size), page(0x00, {})});
    const DriveIdentity told = at.drive.identity();
    CHECK(told.vendor == vendor);
    CHECK(told.product == product);
  }
}

TEST_CASE("A drive writes discs where one bit of its page says so, and not where the page is missing") {
  LookedAt at;
  at.scripted.answer({page(0x00, {{3, 0x01}}), page(0xFF, {{3, 0xFE}}), {.bytes = filled(64, 0xFF, {})}, {}});
  CHECK(at.drive.writesDiscs());
  CHECK(at.scripted.notes() == Notes{"5A 08 2A 00 00 00 00 00 40 00 <64"});
  CHECK_FALSE(at.drive.writesDiscs());
  CHECK_FALSE(at.drive.writesDiscs());
  CHECK_FALSE(at.drive.writesDiscs());
}

TEST_CASE("The drive's own number comes without the blanks behind it, and is empty where there is none") {
  LookedAt at;
  const auto number = [&](const std::string& told, std::uint8_t size) {
    Reply reply{0x05, 0x80, 0x00, size};
    reply.insert(reply.end(), told.begin(), told.end());
    at.scripted.answer({{.bytes = reply}});
    return at.drive.serialNumber();
  };
  CHECK(number("AB 12  ", 7) == "AB 12");
  CHECK(at.scripted.notes() == Notes{"12 01 80 00 40 00 <64"});
  CHECK(number("AB1299", 4) == "AB12");
  CHECK(number("    ", 4).empty());
  CHECK(number("AB", 4).empty());
  CHECK(number(std::string(60, 'x'), 60) == std::string(60, 'x'));
  CHECK(number(std::string(80, 'x'), 80) == std::string(60, 'x'));
  at.scripted.answer({failing(0x052400)});
  CHECK(at.drive.serialNumber().empty());
}

TEST_CASE("A drive that becomes ready is asked now and then, for as long as the patience lasts") {
  LookedAt at;
  const std::string ask = "00 00 00 00 00 00";
  const std::string nap = "nap of 20 ms";
  at.scripted.answer({failing(0x010000)});
  CHECK(at.drive.hasDisc(milliseconds(0)));
  CHECK(at.scripted.notes() == Notes{ask});
  at.scripted.answer({failing(0x062800), failing(0x020401), {}});
  CHECK(at.drive.hasDisc(milliseconds(40)));
  CHECK(at.scripted.notes() == Notes{ask, ask, nap, ask});
  at.scripted.answer({failing(0x020401), failing(0x020407), failing(0x020404)});
  CHECK_FALSE(at.drive.hasDisc(milliseconds(40)));
  CHECK(at.scripted.notes() == Notes{ask, nap, ask, nap, ask, nap});
  at.scripted.answer({failing(0x020401), failing(0x020401), failing(0x020401)});
  CHECK_FALSE(at.drive.hasDisc(milliseconds(39)));
  CHECK(at.scripted.notes() == Notes{ask, nap, ask, nap});
  at.scripted.answer({failing(0x062800), failing(0x062800), {}});
  CHECK_FALSE(at.drive.hasDisc(milliseconds(20)));
  CHECK(at.scripted.notes() == Notes{ask, ask});
  at.scripted.answer({failing(0x023A00)});
  CHECK_FALSE(at.drive.hasDisc(milliseconds(40)));
  CHECK(at.scripted.notes() == Notes{ask});
}

TEST_CASE("Three profiles are those of a CD, and no other") {
  LookedAt at;
  for (const std::uint8_t cd : Reply{0x08, 0x09, 0x0A}) {
    at.scripted.answer({profile(0, cd), profile(1, cd)});
    CHECK(at.drive.hasCompactDisc());
    CHECK_FALSE(at.drive.hasCompactDisc());
  }
  CHECK(at.scripted.notes() == Notes(6, askConfiguration));
  at.scripted.answer({profile(0, 0x07), profile(0, 0x0B)});
  CHECK_FALSE(at.drive.hasCompactDisc());
  CHECK_FALSE(at.drive.hasCompactDisc());
}

TEST_CASE("The tables of a disc are all that the drive tells of it, without those that the disc lacks") {
  LookedAt at;
  const Notes asked{askInformation, askTrack("FF"), "43 00 00 00 00 00 00 03 24 00 <804"};
  at.scripted.answer({{.bytes = {1, 2}}, {.bytes = {3}}, {.bytes = {4, 5, 6}}});
  CHECK(at.drive.tables() == Reply{1, 2, 3, 4, 5, 6});
  CHECK(at.scripted.notes() == asked);
  at.scripted.answer({{.bytes = {1, 2}}, failing(0x052400), {.bytes = {4}}});
  CHECK(at.drive.tables() == Reply{1, 2, 4});
  at.scripted.answer({{.bytes = {1, 2}}, {.bytes = {3}}, failing(0x023A00)});
  CHECK(at.drive.tables() == Reply{1, 2, 3});
}

TEST_CASE("A disc that is no CD is of no known type, and nothing else is asked of it") {
  LookedAt at;
  at.scripted.answer({profile(0, 0x10)});
  const DiscState disc = at.drive.disc();
  CHECK(disc.status == DiscClosed);
  CHECK(disc.type == DiscTypeUnknown);
  CHECK(at.scripted.notes() == Notes{askConfiguration});
}

TEST_CASE("A blank disc has room from its first block on, less what lies before it") {
  LookedAt at;
  at.scripted.answer({profile(0, 0x0A), information({0x10, 1, 1, 0}), next(true, true, 0, 359849)});
  const DiscState blank = at.drive.disc();
  CHECK(at.scripted.notes() == Notes{askConfiguration, askInformation, askTrack("FF")});
  CHECK(blank.status == DiscEmpty);
  CHECK(blank.type == DiscTypeCdRom);
  CHECK(blank.rewritable);
  CHECK(blank.sessions == 0);
  CHECK(blank.lastSession == SessionEmpty);
  CHECK(blank.tracks.empty());
  CHECK(blank.nextWritable == 0);
  CHECK(blank.freeAudioBlocks == 359849);
  CHECK(blank.freeDataBlocks == 359849);
  at.scripted.answer({profile(0, 0x0A), information({0x10, 1, 1, 0}), next(true, true, -150, 1000)});
  const DiscState before = at.drive.disc();
  CHECK(before.nextWritable == 0);
  CHECK(before.freeAudioBlocks == 850);
}

TEST_CASE("A disc with an incomplete session has its tracks and goes on behind them") {
  LookedAt at;
  at.scripted.answer({profile(0, 0x09), information({0x05, 2, 3, 0x20}), track(1, 0xFB, 0x01020304, 0x05060708),
                      track(2, 0x04, 5000, 600), next(true, true, 0x00010203, 0x00020304),
                      next(true, true, 0x00010203, 0x00020304)});
  const DiscState disc = at.drive.disc();
  CHECK(at.scripted.notes() ==
        Notes{askConfiguration, askInformation, askTrack("01"), askTrack("02"), askTrack("03"), askTrack("FF")});
  CHECK(disc.status == DiscOpen);
  CHECK(disc.type == DiscTypeXa);
  CHECK_FALSE(disc.rewritable);
  CHECK(disc.sessions == 2);
  CHECK(disc.lastSession == SessionIncomplete);
  REQUIRE(disc.tracks.size() == 2);
  CHECK(disc.tracks[0].kind == AudioBlocks);
  CHECK(disc.tracks[0].start == 0x01020304);
  CHECK(disc.tracks[0].length == 0x05060708);
  CHECK(disc.tracks[0].session == 1);
  CHECK(disc.tracks[1].kind == DataBlocks);
  CHECK(disc.tracks[1].start == 5000);
  CHECK(disc.tracks[1].length == 600);
  CHECK(disc.tracks[1].session == 2);
  CHECK(disc.nextWritable == 0x00010203);
  CHECK(disc.freeAudioBlocks == 0x00020304);
  CHECK(disc.freeDataBlocks == 0x00020304);
}

TEST_CASE("A disc whose last session is empty has those before it") {
  LookedAt at;
  at.scripted.answer(
      {profile(0, 0x09), information({0x01, 2, 2, 0x10}), track(1, 0, 0, 300), next(true, true, 5, 100)});
  const DiscState disc = at.drive.disc();
  CHECK(at.scripted.notes() == Notes{askConfiguration, askInformation, askTrack("01"), askTrack("FF")});
  CHECK(disc.status == DiscOpen);
  CHECK(disc.type == DiscTypeCdi);
  CHECK(disc.sessions == 1);
  CHECK(disc.lastSession == SessionClosed);
  CHECK(disc.freeAudioBlocks == 100);
  CHECK(disc.nextWritable == 5);
}

TEST_CASE("A closed disc, or one whose state is not to be known, is not asked for room") {
  LookedAt at;
  for (const std::uint8_t bits : Reply{0x0E, 0x0F}) {
    at.scripted.answer({profile(0, 0x08), information({bits, 1, 1, 0x05}), track(1, 0, 0, 300)});
    const DiscState disc = at.drive.disc();
    CHECK(at.scripted.notes() == Notes{askConfiguration, askInformation, askTrack("01")});
    CHECK(disc.status == DiscClosed);
    CHECK(disc.type == DiscTypeCdRom);
    CHECK(disc.sessions == 1);
    CHECK(disc.lastSession == SessionClosed);
    CHECK(disc.freeAudioBlocks == 0);
  }
}

TEST_CASE("A session that is damaged counts as closed") {
  LookedAt at;
  at.scripted.answer({profile(0, 0x09), information({0x0A, 1, 1, 0}), track(1, 0, 0, 300)});
  CHECK(at.drive.disc().lastSession == SessionClosed);
}

TEST_CASE("A disc on whose next track somebody has begun, or that takes none, is closed") {
  LookedAt at;
  for (const auto& [blank, writable] : {std::pair(false, true), std::pair(true, false)}) {
    at.scripted.answer({profile(0, 0x09), information({0x00, 1, 1, 0}), next(blank, writable, 0, 1000)});
    const DiscState disc = at.drive.disc();
    CHECK(disc.status == DiscClosed);
    CHECK(disc.freeAudioBlocks == 0);
  }
}

TEST_CASE("The next block of a track is where the drive says, unless the disc takes none") {
  LookedAt at;
  at.scripted.answer({next(true, true, 0x01020304, 1), next(true, false, 0, 1)});
  CHECK(at.drive.nextWritable() == 0x01020304);
  CHECK(at.scripted.notes() == Notes{askTrack("FF")});
  CHECK(at.failureOf([&] { at.drive.nextWritable(); }) == "the disc takes no more tracks (5/30/05)");
}

TEST_CASE("Each look that fails says what was looked for, and why it failed") {
  LookedAt at;
  const std::string why = ": a block cannot be read (3/11/00)";
  const auto failing = [&](std::vector<Answer> before, const auto& look) {
    before.push_back({.sense = 0x031100});
    at.scripted.answer(before);
    return at.failureOf(look);
  };
  CHECK(failing({}, [&] { at.drive.identity(); }) == "the drive does not tell what it is" + why);
  CHECK(failing({inquiry()}, [&] { at.drive.identity(); }) == "the drive does not tell what it can do" + why);
  CHECK(failing({}, [&] { at.drive.writesDiscs(); }) == "the drive does not tell what it can do" + why);
  CHECK(failing({}, [&] { at.drive.hasCompactDisc(); }) == "the drive does not tell what kind of disc it has" + why);
  CHECK(failing({}, [&] { at.drive.tables(); }) == "the disc cannot be read" + why);
  CHECK(failing({profile(0, 9)}, [&] { at.drive.disc(); }) == "the disc cannot be read" + why);
  CHECK(failing({}, [&] { at.drive.nextWritable(); }) == "the tracks of the disc cannot be read" + why);
  CHECK(failing({}, [&] { at.drive.bufferPercent(); }) == "the drive does not tell of its buffer" + why);
}

TEST_CASE("The buffer is as full as what of it is not free, and full where there is none") {
  LookedAt at;
  const auto percent = [&](std::uint32_t size, std::uint32_t left) {
    Reply reply = filled(12, 0xFF, {});
    putNumber(reply, 4, size);
    putNumber(reply, 8, left);
    at.scripted.answer({{.bytes = reply}});
    return at.drive.bufferPercent();
  };
  CHECK(percent(1000, 250) == 75);
  CHECK(at.scripted.notes() == Notes{"5C 00 00 00 00 00 00 00 0C 00 <12"});
  CHECK(percent(0x40000000, 0x10000000) == 75);
  CHECK(percent(1000, 0) == 100);
  CHECK(percent(1000, 1001) == 0);
  CHECK(percent(1, 1) == 0);
  CHECK(percent(0, 7) == 100);
}

}  // namespace trackloom::engines::libburn
