#include <fcntl.h>

#include "engines/disc/Sense.h"
#include "engines/libburn/LibburnRecorder.h"
#include "engines/libburn/ScriptedDrive.h"
#include "engines/libburn/ToldRecorder.h"

namespace trackloom::engines::libburn {

using Catch::Matchers::Contains;
using Lines = std::vector<std::string>;

namespace {

WriteOrder orderOf(bool closeSession, BlockKind kind = AudioBlocks) {
  WriteOrder order;
  order.kind = kind;
  order.trackBlocks = {310, 20};
  order.closeSession = closeSession;
  order.closeDisc = false;
  return order;
}

void write(ToldRecorder& told, const WriteOrder& order) {
  ToldWrite all(order.kind);
  told.recorder->write(order, all, all, {});
}

/// Of the first track, which has 310 blocks, where the disc says so of it.
std::int32_t lengthTold(const ToldRecorder& told, std::int32_t onDisc) {
  const auto disc = told.drive.place() / "disc";
  const std::string before = told.folder.read("drives/sr0/disc/disc");
  std::string text = before;
  text.replace(text.find(" 310 ") + 1, 3, std::to_string(onDisc));
  std::filesystem::rename(disc, told.drive.place() / "out");
  CHECK_FALSE(told.recorder->look()->disc);
  std::filesystem::rename(told.drive.place() / "out", disc);
  told.folder.write("drives/sr0/disc/disc", text);
  const std::int32_t length = told.disc().tracks.at(0).length;
  told.folder.write("drives/sr0/disc/disc", before);
  return length;
}

}  // namespace

TEST_CASE("Whatever needs a disc says that there is none") {
  ToldRecorder told;
  told.drive.takeDiscOut();
  ToldWrite nobody;
  const std::string none = "no disc is in the drive (2/3A/00)";
  CHECK(told.failureOf([&] { write(told, orderOf(true)); }) == none);
  CHECK(told.failureOf([&] { told.recorder->check(orderOf(true)); }) == none);
  CHECK(told.failureOf([&] { told.recorder->read(0, 1); }) == none);
  CHECK(told.failureOf([&] { told.recorder->erase(true, nobody, {}); }) == none);
  CHECK(told.failureOf([&] { told.recorder->close(true, nobody, {}); }) == none);
}

TEST_CASE("A disc that can be written once is not erased, and one without an incomplete session is not closed") {
  ToldRecorder told;
  ToldWrite nobody;
  CHECK(told.failureOf([&] { told.recorder->erase(true, nobody, {}); }) ==
        "the disc cannot be erased: it can be written once only (5/30/05)");
  const std::string none = "the disc has no incomplete session (5/2C/00)";
  CHECK(told.failureOf([&] { told.recorder->close(false, nobody, {}); }) == none);
  write(told, orderOf(true));
  CHECK(told.failureOf([&] { told.recorder->close(false, nobody, {}); }) == none);
  CHECK(nobody.lines.empty());
}

TEST_CASE("An erase is told before it begins, is quick or whole, and tells that it was stopped once it is done") {
  ToldRecorder told;
  told.drive.insert(5000, true);
  ToldWrite observer;
  std::stop_source stop;
  observer.onLine = [&](const std::string& line) {
    CHECK(line == "erasing");
    CHECK_THAT(told.drive.commands(), !Contains("BLANK"));
  };
  told.recorder->erase(false, observer, stop.get_token());
  CHECK(observer.lines == Lines{"erasing"});
  const std::string log = told.commands();
  CHECK_THAT(log, Contains("BLANK A1 10") && Contains("PREVENT-ALLOW 1E 00 00 00 01"));
  CHECK_THAT(log.substr(log.find("BLANK")), Contains("PREVENT-ALLOW 1E 00 00 00 00"));
  observer.onLine = {};
  stop.request_stop();
  CHECK(told.failureOf([&] { told.recorder->erase(true, observer, stop.get_token()); }) == "stopped");
  CHECK_THAT(told.commands(), Contains("BLANK A1 11"));
}

TEST_CASE("An incomplete session is closed as what was written last, and the disc with it where that is wanted") {
  for (const bool alsoDisc : {true, false})
    for (const BlockKind kind : {AudioBlocks, DataBlocks}) {
      ToldRecorder told;
      write(told, orderOf(false, kind));
      told.commands();
      ToldWrite observer;
      told.recorder->close(alsoDisc, observer, {});
      CHECK(observer.lines == (alsoDisc ? Lines{"session", "disc"} : Lines{"session"}));
      const std::string sessions = alsoDisc ? "0" : "C";
      const std::string page =
          kind == AudioBlocks ? " 05 32 01 " + sessions + "0 00 " : " 05 32 01 " + sessions + "4 08 ";
      const std::string log = told.commands();
      CHECK_THAT(log, Contains(page));
      CHECK(log.find("MODE-SELECT") < log.find("SYNCHRONIZE-CACHE"));
      CHECK(log.find("SYNCHRONIZE-CACHE") < log.find("CLOSE-TRACK-SESSION 5B 00 02"));
      CHECK(told.disc().status == (alsoDisc ? DiscClosed : DiscOpen));
      CHECK(told.disc().lastSession == (alsoDisc ? SessionClosed : SessionClosed));
    }
}

TEST_CASE("Blocks are read within one track, to its edges and not beyond, also beside a program that has the drive") {
  ToldRecorder told;
  write(told, orderOf(true));
  const int other = ::open("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK);
  REQUIRE(other >= 0);
  CHECK(told.recorder->read(0, 310).size() == std::size_t{310} * 2352);
  CHECK(told.recorder->read(309, 1) == std::vector<std::byte>(2352, std::byte{1}));
  CHECK(told.recorder->read(460, 20) == std::vector<std::byte>(std::size_t{20} * 2352, std::byte{2}));
  ::close(other);
  const auto failure = [&](std::int32_t block, std::int32_t count) {
    return told.failureOf([&] { told.recorder->read(block, count); });
  };
  CHECK(failure(309, 2) == "the disc has no 2 recorded blocks from block 309 on (5/21/00)");
  CHECK(failure(-1, 1) == "the disc has no 1 recorded blocks from block -1 on (5/21/00)");
  CHECK(failure(459, 2) == "the disc has no 2 recorded blocks from block 459 on (5/21/00)");
  CHECK(failure(460, 21) == "the disc has no 21 recorded blocks from block 460 on (5/21/00)");
}

TEST_CASE("While an operation runs the drive is not opened, and looks cost it no command") {
  ToldRecorder told;
  ToldWrite write;
  std::shared_ptr<const DriveSnapshot> before = told.recorder->look();
  write.onLine = [&](const std::string& line) {
    if (!line.starts_with("progress 1 6")) return;
    CHECK(told.failureOf([&] { told.recorder->eject(); }) == "the drive is busy: an operation runs (2/04/08)");
    const std::string log = told.drive.commands();
    CHECK(told.recorder->look() == before);
    CHECK(told.drive.commands() == log);
  };
  told.recorder->write(orderOf(false), write, write, {});
  CHECK(told.recorder->look() != before);
  told.recorder->eject();
}

TEST_CASE("A disc that nobody has looked at before is seen while it is erased") {
  ToldRecorder told;
  told.drive.insert(5000, true);
  ToldWrite observer;
  observer.onLine = [&](const std::string&) { CHECK(told.disc().rewritable); };
  told.recorder->erase(true, observer, {});
  CHECK(observer.lines.size() == 1);
}

TEST_CASE("A disc that stays is the same snapshot, and one that was out of the drive another, as behind an operation") {
  ToldRecorder told;
  told.drive.insert(5000, true);
  const auto first = told.recorder->look();
  CHECK(told.recorder->look() == first);
  const auto out = told.drive.place() / "out";
  std::filesystem::rename(told.drive.place() / "disc", out);
  CHECK_FALSE(told.recorder->look()->disc);
  std::filesystem::rename(out, told.drive.place() / "disc");
  const auto second = told.recorder->look();
  CHECK(second != first);
  told.drive.configure("fault = * unplugged\n");
  CHECK_FALSE(told.recorder->look()->disc);
  told.drive.configure("");
  const auto third = told.recorder->look();
  CHECK(third != second);
  CHECK(third->disc);
  ToldWrite nobody;
  told.recorder->erase(true, nobody, {});
  CHECK(told.recorder->look() != third);
}

TEST_CASE("A drive is taken beside a program that has it, and keeps its names when it goes") {
  ToldRecorder told;
  const int other = ::open("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK);
  REQUIRE(other >= 0);
  const auto recorder = told.drive.recorders().front();
  CHECK(recorder->take());
  ::close(other);
  told.drive.configure("fault = * unplugged\n");
  CHECK_FALSE(recorder->take());
  const auto gone = recorder->look();
  CHECK_FALSE(gone->disc);
  CHECK(gone->identity.vendor == "EMULATED");
  CHECK(gone->identity.maxWriteSpeed == 48);
}

TEST_CASE("Only a drive that somebody has taken is waited for when it is looked at") {
  ToldRecorder told;
  const auto nobodys = told.drive.recorders().front();
  told.drive.configure("fault = TEST-UNIT-READY 2/04/01 times 3\n");
  CHECK_FALSE(nobodys->look()->disc);
  CHECK(nobodys->take());
  CHECK(nobodys->look()->disc);
}

TEST_CASE("What the drive does not list behind a write was not written") {
  for (const bool library : {true, false}) {
    ToldRecorder told;
    ToldWrite write;
    write.onLine = [&](const std::string& line) {
      if (line == "closing 2") told.drive.configure("profile = 27\n");
    };
    CHECK(told.failureOf([&] { told.recorder->write(orderOf(library), write, write, {}); }) ==
          "the disc does not list what was written onto it (E/1D/00)");
  }
}

TEST_CASE("A track to which the drive adds more than drives do is not what was written, whichever it is") {
  for (const std::vector<std::int32_t>& blocks : {std::vector{20}, std::vector{500, 20}, std::vector{20, 500}}) {
    ToldRecorder told;
    told.drive.configure("shortest track = 400\n");
    WriteOrder order = orderOf(false);
    order.trackBlocks = blocks;
    CHECK(told.failureOf([&] { write(told, order); }) == "the disc does not list what was written onto it (E/1D/00)");
    told.drive.insert(359849, false);
    order.trackBlocks = {500, 401};
    CHECK(told.failureOf([&] { write(told, order); }).empty());
  }
}

TEST_CASE(
    "An order that does not fit the disc is refused before anything is asked of its source or sent to the drive") {
  for (const bool library : {true, false}) {
    ToldRecorder told;
    told.drive.insert(300, false);
    ToldWrite nothing;
    CHECK_THAT(told.failureOf([&] { told.recorder->write(orderOf(library), nothing, nothing, {}); }),
               Contains("(5/63/00)"));
    CHECK(nothing.lines.empty());
    CHECK_THAT(told.commands(), !Contains("MODE-SELECT"));
    CHECK_THAT(told.failureOf([&] { told.recorder->check(orderOf(library)); }), Contains("(5/63/00)"));
  }
}

TEST_CASE("A track that the drive lists as one of another kind is not what was written") {
  ToldRecorder told;
  ToldWrite write;
  std::optional<AlteredAnswers> altered;
  write.onLine = [&](const std::string& line) {
    if (line == "closing 2")
      altered.emplace([](std::uint8_t command, std::uint8_t* answer) {
        if (command == 0x52) answer[5] ^= 4U;
      });
  };
  CHECK(told.failureOf([&] { told.recorder->write(orderOf(false), write, write, {}); }) ==
        "the disc does not list what was written onto it (E/1D/00)");
}

TEST_CASE("A session that has no track yet is closed as one of data") {
  ScriptedDrive scripted;
  LibburnRecorder recorder(scripted.path(), "id", nullptr);
  const auto bytes = [](std::size_t size, const std::vector<std::pair<std::size_t, std::uint8_t>>& told) {
    Answer answer{.bytes = Reply(size)};
    for (const auto& [at, byte] : told) answer.bytes[at] = byte;
    return answer;
  };
  const Answer blank = bytes(36, {{6, 0x40}, {7, 0x01}});
  scripted.answer({{}, {}, bytes(8, {{7, 0x09}}), bytes(34, {{2, 0x05}, {4, 1}, {6, 1}}), blank, blank});
  ToldWrite observer;
  recorder.close(false, observer, {});
  CHECK(scripted.sent[11] == 0xC4);
  CHECK(scripted.sent[12] == 0x08);
}

TEST_CASE("The pause stands before each track but the first of a disc") {
  for (const std::int32_t pause : {75, 150, 300}) {
    ToldRecorder told;
    WriteOrder order = orderOf(true);
    order.pause = pause;
    write(told, order);
    const auto tracks = told.disc().tracks;
    REQUIRE(tracks.size() == 2);
    CHECK(tracks[0].start == 0);
    CHECK(tracks[1].start == 310 + pause);
  }
}

TEST_CASE("Up to 302 blocks more than were sent are the drive's own, and count to no track") {
  ToldRecorder told;
  write(told, orderOf(true));
  CHECK(lengthTold(told, 310) == 310);
  CHECK(lengthTold(told, 311) == 310);
  CHECK(lengthTold(told, 612) == 310);
  CHECK(lengthTold(told, 613) == 613);
  CHECK(lengthTold(told, 309) == 309);
}

TEST_CASE("A disc on which a write failed is closed for good, as far as its drive still does that") {
  for (const BlockKind kind : {AudioBlocks, DataBlocks}) {
    ToldRecorder told;
    told.drive.configure("fault = WRITE 3/0C/00 block 200\n");
    CHECK_THAT(told.failureOf([&] { write(told, orderOf(false, kind)); }), Contains("write error (3/0C/00)"));
    std::string log = told.commands();
    log = log.substr(log.find(" -> 03/0C/00"));
    const std::string page = kind == AudioBlocks ? " 05 32 01 00 00 " : " 05 32 01 04 08 ";
    CHECK(log.find("SYNCHRONIZE-CACHE") < log.find("CLOSE-TRACK-SESSION 5B 00 01"));
    CHECK(log.find("CLOSE-TRACK-SESSION 5B 00 01") < log.find(page));
    CHECK(log.find(page) < log.find("CLOSE-TRACK-SESSION 5B 00 02"));
    CHECK(log.find("CLOSE-TRACK-SESSION 5B 00 02") != std::string::npos);
    CHECK(told.disc().status == DiscClosed);
  }
}

TEST_CASE("A disc on which a write failed counts as closed where its drive closes nothing") {
  for (const bool library : {true, false}) {
    ToldRecorder told;
    told.drive.insert(5000, true);
    ToldWrite all;
    all.onLine = [&](const std::string& line) {
      if (line != "progress 1 1") return;
      told.drive.configure(
          "fault = WRITE 3/0C/00 block 200\nfault = CLOSE-TRACK-SESSION 3/72/00\nfault = SYNCHRONIZE-CACHE 3/72/00\n");
    };
    CHECK(told.failureOf([&] { told.recorder->write(orderOf(library), all, all, {}); }) != "");
    CHECK(told.disc().status == DiscClosed);
    CHECK(told.disc().freeAudioBlocks == 0);
    CHECK(told.disc().freeDataBlocks == 0);
    told.drive.configure("");
    CHECK(told.disc().status == DiscClosed);
    CHECK(told.disc().freeAudioBlocks == 0);
    CHECK(told.disc().freeDataBlocks == 0);
    ToldWrite nobody;
    told.recorder->erase(true, nobody, {});
    CHECK(told.disc().status == DiscEmpty);
  }
}

TEST_CASE("A disc on which a write failed at its first block counts as closed, though its drive has it for blank") {
  for (const bool library : {true, false}) {
    ToldRecorder told;
    told.drive.insert(5000, true);
    told.drive.configure(
        "fault = WRITE 3/0C/00\nfault = CLOSE-TRACK-SESSION 3/72/00\nfault = SYNCHRONIZE-CACHE 3/72/00\n");
    CHECK(told.failureOf([&] { write(told, orderOf(library)); }) != "");
    told.drive.configure("");
    CHECK(told.disc().status == DiscClosed);
    CHECK(told.disc().freeAudioBlocks == 0);
    CHECK(told.disc().freeDataBlocks == 0);
    CHECK(told.drive.recorders().front()->look()->disc->status == DiscEmpty);
    ToldWrite nobody;
    told.recorder->erase(true, nobody, {});
  }
}

TEST_CASE("What the library sends to a drive is what was ordered, and neither opens nor calibrates it") {
  for (const bool guarded : {true, false})
    for (const bool test : {true, false})
      for (const bool closeDisc : {true, false})
        for (const BlockKind kind : {AudioBlocks, DataBlocks}) {
          ToldRecorder told;
          told.recorder->enableWriteGuard(guarded);
          WriteOrder order = orderOf(true, kind);
          order.test = test;
          order.closeDisc = closeDisc;
          order.speed = 8;
          write(told, order);
          char page[32];
          std::snprintf(page, sizeof page, " 05 32 %02X %02X %02X ",
                        (kind == AudioBlocks ? 0x02 : 0x01) | (guarded ? 0x40 : 0) | (test ? 0x10 : 0),
                        (closeDisc ? 0 : 0xC0) | (kind == AudioBlocks ? 0 : 4), kind == AudioBlocks ? 0 : 8);
          const std::string log = told.commands();
          const std::string last = log.substr(log.rfind("MODE-SELECT", log.find("WRITE ")));
          INFO(page << " in " << last.substr(0, 120));
          CHECK_THAT(last.substr(0, last.find('\n')), Contains(page));
          CHECK_THAT(log, !Contains("SEND-OPC") && !Contains("START-STOP-UNIT 1B 00 00 00 02") &&
                              Contains("SET-CD-SPEED BB 00 21 00 05 80 "));
        }
}

TEST_CASE("The library tells the drive the speed that was ordered, and the most where none was") {
  for (const auto& [speed, told] :
       std::vector<std::pair<int, std::string>>{{-1, "21 00"}, {0, "21 00"}, {1, "00 B0"}, {8, "05 80"}}) {
    ToldRecorder recorder;
    WriteOrder order = orderOf(true);
    order.speed = static_cast<std::int16_t>(speed);
    write(recorder, order);
    const std::string log = recorder.commands();
    INFO(speed << ": " << log.substr(log.find("SET-CD-SPEED"), 50));
    CHECK_THAT(log, Contains("SET-CD-SPEED BB 00 21 00 " + told + " "));
  }
}

TEST_CASE("A further session of sound is told to the drive as sound in every page, track by track") {
  ToldRecorder told;
  write(told, orderOf(true));
  told.commands();
  write(told, orderOf(true));
  const std::string log = told.commands();
  REQUIRE(log.find("MODE-SELECT") != std::string::npos);
  for (std::size_t at = log.find(" 05 32 "); at != std::string::npos; at = log.find(" 05 32 ", at + 1))
    CHECK(log.substr(at + 13, 2) == "00");
}

TEST_CASE("A drive is free again behind each write of the library, and keeps its disc") {
  ToldRecorder told;
  for (int turn = 0; turn < 3; ++turn) {
    WriteOrder order = orderOf(true);
    order.test = turn < 2;
    write(told, order);
    const int other = ::open("/dev/sr0", O_RDWR | O_EXCL | O_NONBLOCK);
    CHECK(other >= 0);
    ::close(other);
  }
  CHECK(told.disc().sessions == 1);
}

}  // namespace trackloom::engines::libburn
