#include <catch2/catch.hpp>

#include "engines/ground/EngineError.h"
#include "engines/libburn/Drive.h"
#include "engines/libburn/ScriptedDrive.h"

namespace trackloom::engines::libburn {

using Notes = std::vector<std::string>;

namespace {

const std::string ready = "00 00 00 00 00 00";
const std::string nap = "nap of 20 ms";
const std::string why = ": write error (3/0C/00)";

struct AtWork {
  ScriptedDrive scripted;
  Drive drive{scripted.path(), Hold::Shared};

  /// What the deed fails with where the commands before the last of these succeed.
  template <class Deed>
  std::string failure(const std::vector<Answer>& answers, const Deed& deed) {
    scripted.answer(answers);
    try {
      deed();
    } catch (const EngineError& error) {
      return error.words();
    }
    return "";
  }
};

Reply parametersOf(const WriteParameters& parameters) {
  AtWork at;
  at.drive.prepare(parameters);
  CHECK(at.scripted.notes() == Notes{"55 10 00 00 00 00 00 00 3C 00 >60"});
  return at.scripted.sent;
}

/// Eight bytes of header, and page 05 (MMC-3, 6.3.10) with what is named of it.
Reply writePage(std::uint8_t type, std::uint8_t sessions, std::uint8_t blocks, std::uint8_t high, std::uint8_t low) {
  Reply page(60);
  page[8] = 0x05;
  page[9] = 0x32;
  page[10] = type;
  page[11] = sessions;
  page[12] = blocks;
  page[22] = high;
  page[23] = low;
  return page;
}

}  // namespace

TEST_CASE("What a drive is to write reaches it byte for byte") {
  CHECK(parametersOf({AudioBlocks, 0x0123, false, false, false}) == writePage(0x01, 0x00, 0x00, 0x01, 0x23));
  CHECK(parametersOf({AudioBlocks, 150, true, false, true}) == writePage(0x11, 0xC0, 0x00, 0x00, 0x96));
  CHECK(parametersOf({DataBlocks, 150, false, true, false}) == writePage(0x41, 0x04, 0x08, 0x00, 0x96));
  CHECK(parametersOf({DataBlocks, 150, true, true, true}) == writePage(0x51, 0xC4, 0x08, 0x00, 0x96));
}

TEST_CASE("A drive that tells of a change is told the parameters again, three times in all") {
  AtWork at;
  const auto prepare = [&] { at.drive.prepare({AudioBlocks, 150, false, false, false}); };
  CHECK(at.failure({failing(0x062A01), failing(0x062900)}, prepare).empty());
  CHECK(at.scripted.notes().size() == 3);
  CHECK(at.failure({failing(0x062A01), failing(0x062A01), failing(0x062900)}, prepare) ==
        "the drive cannot write in this way: the drive was reset (6/29/00)");
  CHECK(at.scripted.notes().size() == 3);
  CHECK(at.failure({failing(0x052600)}, prepare) ==
        "the drive cannot write in this way: the drive does not take these parameters (5/26/00)");
  CHECK(at.scripted.notes().size() == 1);
  CHECK(at.failure({failing(0x010000)}, prepare).empty());
}

TEST_CASE("A speed reaches the drive in kilobytes a second, and none as the most") {
  AtWork at;
  for (const int multiple : {-1, 0, 1, 8}) at.drive.setSpeed(static_cast<std::int16_t>(multiple));
  CHECK(at.scripted.notes() == Notes{"BB 00 FF FF FF FF 00 00 00 00 00 00", "BB 00 FF FF FF FF 00 00 00 00 00 00",
                                     "BB 00 FF FF 00 B0 00 00 00 00 00 00", "BB 00 FF FF 05 80 00 00 00 00 00 00"});
  CHECK(at.failure({failing(0x052000)}, [&] { at.drive.setSpeed(4); }).empty());
}

TEST_CASE("A calibration fails by the disc or the drive, and not where the drive knows none") {
  AtWork at;
  const auto calibrate = [&] { at.drive.calibrate(); };
  CHECK(at.failure({}, calibrate).empty());
  CHECK(at.scripted.notes() == Notes{"54 01 00 00 00 00 00 00 00 00 slow"});
  CHECK(at.failure({failing(0x030C00)}, calibrate) == "the disc cannot be written" + why);
  CHECK(at.failure({failing(0x044400)}, calibrate) == "the disc cannot be written: the drive failed within (4/44/00)");
  CHECK(at.failure({failing(0x023A00)}, calibrate).empty());
  CHECK(at.failure({failing(0x052000)}, calibrate).empty());
}

TEST_CASE("Blocks are sent again while the drive's buffer is full, until somebody has enough of it") {
  AtWork at;
  const std::vector<std::byte> sectors{std::byte{1}, std::byte{2}, std::byte{3}};
  bool goOn = true;
  const auto write = [&] { at.drive.write(0x01020304, 0x0506, sectors, [&] { return goOn; }); };
  const std::string command = "2A 00 01 02 03 04 00 05 06 00 >3 slow";
  CHECK(at.failure({failing(0x020408), failing(0x020407)}, write).empty());
  CHECK(at.scripted.notes() == Notes{command, nap, command, nap, command});
  CHECK(at.scripted.sent == Reply{1, 2, 3});
  CHECK(at.failure({failing(0x020408), failing(0x030C00)}, write) == "writing from block 16909060 on failed" + why);
  CHECK(at.scripted.notes() == Notes{command, nap, command});
  goOn = false;
  CHECK(at.failure({failing(0x020408), failing(0x030C00)}, write).empty());
  CHECK(at.scripted.notes() == Notes{command});
}

TEST_CASE("A track is closed once the drive has written it, and waited for, and each step may fail") {
  AtWork at;
  const std::string flush = "35 00 00 00 00 00 00 00 00 00 slow";
  const std::string close = "5B 00 01 00 00 FF 00 00 00 00 slow";
  const auto closeTrack = [&] { at.drive.closeTrack(); };
  CHECK(at.failure({{}, failing(0x020408), failing(0x062800), failing(0x010000)}, closeTrack).empty());
  CHECK(at.scripted.notes() == Notes{flush, ready, nap, ready, nap, ready, nap, ready, close, ready});
  const std::string failed = "the track could not be closed" + why;
  for (std::size_t passing = 0; passing < 4; ++passing) {
    std::vector<Answer> answers(passing);
    answers.push_back(failing(0x030C00));
    CHECK(at.failure(answers, closeTrack) == failed);
    CHECK(at.scripted.notes().size() == passing + 1);
  }
}

TEST_CASE("A session is closed and waited for, and either may fail") {
  AtWork at;
  const auto closeSession = [&] { at.drive.closeSession(); };
  CHECK(at.failure({{}, failing(0x020401)}, closeSession).empty());
  CHECK(at.scripted.notes() == Notes{"5B 00 02 00 00 00 00 00 00 00 slow", ready, nap, ready});
  CHECK(at.failure({failing(0x030C00)}, closeSession) == "the session could not be closed" + why);
  CHECK(at.failure({{}, failing(0x030C00)}, closeSession) == "the session could not be closed" + why);
}

TEST_CASE("A disc is erased whole or quickly, and waited for") {
  AtWork at;
  const auto waiting = [&] { at.scripted.note("waiting"); };
  CHECK(at.failure({{}, failing(0x020404), failing(0x020407)}, [&] { at.drive.erase(false, waiting); }).empty());
  CHECK(at.scripted.notes() ==
        Notes{"A1 10 00 00 00 00 00 00 00 00 00 00 slow", ready, "waiting", nap, ready, "waiting", nap, ready});
  CHECK(at.failure({}, [&] { at.drive.erase(true, waiting); }).empty());
  CHECK(at.scripted.notes() == Notes{"A1 11 00 00 00 00 00 00 00 00 00 00 slow", ready});
  CHECK(at.failure({failing(0x030C00)}, [&] { at.drive.erase(true, waiting); }) ==
        "the disc could not be erased" + why);
  CHECK(at.failure({{}, failing(0x030C00)}, [&] { at.drive.erase(true, waiting); }) ==
        "the disc could not be erased" + why);
}

TEST_CASE("Sectors are read sixteen at a time, and come one behind the other") {
  AtWork at;
  for (const auto& [kind, bytes, commands] : std::vector<std::tuple<BlockKind, std::size_t, Notes>>{
           {AudioBlocks,
            2352,
            {"BE 04 01 02 03 04 00 00 10 10 00 00 <37632", "BE 04 01 02 03 14 00 00 04 10 00 00 <9408"}},
           {DataBlocks, 2048, {"28 00 01 02 03 04 00 00 10 00 <32768", "28 00 01 02 03 14 00 00 04 00 <8192"}}}) {
    at.scripted.answer({{.bytes = Reply(16 * bytes, 0xAA)}, {.bytes = Reply(4 * bytes, 0xBB)}});
    std::vector<std::byte> expected(16 * bytes, std::byte{0xAA});
    expected.resize(20 * bytes, std::byte{0xBB});
    CHECK(at.drive.read(kind, 0x01020304, 20) == expected);
    CHECK(at.scripted.notes() == commands);
  }
  CHECK(at.drive.read(AudioBlocks, 0, 0).empty());
  CHECK(at.scripted.notes().empty());
}

TEST_CASE("A block that cannot be read is named, and so is one of which less came") {
  AtWork at;
  const auto read = [&] { at.drive.read(DataBlocks, 100, 17); };
  const Answer whole{.bytes = Reply(std::size_t{16} * 2048)};
  CHECK(at.failure({failing(0x031100)}, read) == "block 100 cannot be read: a block cannot be read (3/11/00)");
  CHECK(at.failure({whole, failing(0x031100)}, read) == "block 116 cannot be read: a block cannot be read (3/11/00)");
  CHECK(at.failure({whole, {.bytes = Reply(2047)}}, read) == "block 116 cannot be read: the drive gave less (3/11/00)");
}

TEST_CASE("The tray is freed before it is opened, also where the drive tells of a change first") {
  AtWork at;
  const std::string unlock = "1E 00 00 00 00 00";
  const std::string open = "1B 00 00 00 02 00 slow";
  const auto openTray = [&] { at.drive.openTray(); };
  at.drive.lockTray(true);
  at.drive.lockTray(false);
  CHECK(at.scripted.notes() == Notes{"1E 00 00 00 01 00", unlock});
  CHECK(at.failure({}, openTray).empty());
  CHECK(at.scripted.notes() == Notes{unlock, open});
  CHECK(at.failure({{}, failing(0x062800)}, openTray).empty());
  CHECK(at.scripted.notes() == Notes{unlock, open, open});
  CHECK(at.failure({{}, failing(0x045300)}, openTray) ==
        "the disc cannot be ejected: the tray cannot be moved (4/53/00)");
  CHECK(at.scripted.notes() == Notes{unlock, open});
  CHECK(at.failure({{}, failing(0x062800), failing(0x062900)}, openTray) ==
        "the disc cannot be ejected: the drive was reset (6/29/00)");
}

}  // namespace trackloom::engines::libburn
