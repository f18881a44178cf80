#include "engines/disc/Sense.h"
#include "engines/libburn/ScriptedDrive.h"
#include "engines/libburn/ToldRecorder.h"

namespace trackloom::engines::libburn {

using Catch::Matchers::Contains;
using Lines = std::vector<std::string>;

namespace {

/// Two tracks: by the library where the session is closed, and as tracks at once where it stays open.
WriteOrder orderOf(bool closeSession, bool closeDisc) {
  WriteOrder order;
  order.trackBlocks = {20, 5};
  order.closeSession = closeSession;
  order.closeDisc = closeDisc;
  return order;
}

Lines firstTrack() {
  return {"begin 1",       "track 1 of 20", "read 1",        "progress 1 1", "read 5",        "progress 1 6", "read 5",
          "progress 1 11", "read 5",        "progress 1 16", "read 4",       "progress 1 20", "closing 1"};
}

Lines bothTracks() {
  Lines lines = firstTrack();
  for (const char* line : {"begin 2", "track 2 of 5", "read 1", "progress 2 1", "read 1", "progress 2 2", "read 1",
                           "progress 2 3", "read 1", "progress 2 4", "read 1", "progress 2 5", "closing 2"})
    lines.push_back(line);
  return lines;
}

Lines with(Lines lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

std::ptrdiff_t countOf(const std::string& what, const std::string& text) {
  std::ptrdiff_t count = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
  return count;
}

Lines written(ToldRecorder& told, const WriteOrder& order) {
  ToldWrite write(order.kind);
  told.recorder->write(order, write, write, {});
  // Full before the drive was asked for the first time.
  for (const std::int16_t percent : write.bufferPercents) CHECK((percent == 93 || percent == 100));
  return write.lines;
}

}  // namespace

TEST_CASE("A write asks for its sectors piece by piece, and tells each piece and each closing in its place") {
  ToldRecorder told;
  CHECK(written(told, orderOf(false, false)) == bothTracks());
  CHECK(written(told, orderOf(true, false)) == with(bothTracks(), {"session"}));
  told.drive.insert(5000, false);
  CHECK(written(told, orderOf(false, false)) == bothTracks());
  CHECK(written(told, orderOf(true, true)) == with(bothTracks(), {"session", "disc"}));
  told.drive.insert(359849, false);
  CHECK(written(told, orderOf(true, false)) == with(bothTracks(), {"session"}));
  CHECK(written(told, orderOf(false, true)) == with(bothTracks(), {"disc"}));
}

TEST_CASE("Pieces are of sixteen blocks at most, behind a first one of one block") {
  for (const bool library : {true, false}) {
    ToldRecorder told;
    WriteOrder order = orderOf(library, false);
    order.trackBlocks = {68};
    Lines lines{"begin 1", "track 1 of 68", "read 1", "progress 1 1"};
    for (const int position : {17, 33, 49, 65})
      lines = with(lines, {"read 16", "progress 1 " + std::to_string(position)});
    lines = with(lines, {"read 3", "progress 1 68", "closing 1"});
    CHECK(written(told, order) == (library ? with(lines, {"session"}) : lines));
    told.drive.insert(5000, false);
    order.trackBlocks = {4};
    CHECK(written(told, order).size() == (library ? 12U : 11U));
  }
}

TEST_CASE(
    "Each track of a write lies on the disc with its own sectors, and what is told of the buffer is the drive's") {
  for (const bool library : {true, false}) {
    ToldRecorder told;
    ToldWrite write;
    WriteOrder order = orderOf(library, false);
    order.trackBlocks = {310, 20};
    told.recorder->write(order, write, write, {});
    const std::string all = told.folder.read("drives/sr0/disc/sectors");
    const auto block = [&](std::size_t at) { return all.substr((at + 150) * 2352, 2352); };
    const std::size_t second = library ? 460 : 462;
    CHECK(block(0) == std::string(2352, '\1'));
    CHECK(block(309) == std::string(2352, '\1'));
    CHECK(block(310) == std::string(2352, '\0'));
    CHECK(block(second) == std::string(2352, '\2'));
    CHECK(block(second + 19) == std::string(2352, '\2'));
    CHECK(write.bufferPercents.back() == 93);
  }
}

TEST_CASE("A write of tracks that is stopped at whatever it tells does not go on behind it") {
  const Lines all = with(bothTracks(), {"session", "disc"});
  for (std::size_t at = 0; at < all.size(); ++at) {
    ToldRecorder told;
    WriteOrder open = orderOf(false, false);
    open.trackBlocks = {20};
    written(told, open);
    ToldWrite write;
    std::stop_source stop;
    write.onLine = [&](const std::string&) {
      if (write.lines.size() == at + 1) stop.request_stop();
    };
    told.commands();
    CHECK(ToldRecorder::failureOf([&] { told.recorder->write(orderOf(true, true), write, write, stop.get_token()); }) ==
          "stopped");
    // What was told while nobody could be asked comes as it would have.
    Lines expected(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(at) + 1);
    if (all[at] == "progress 1 20") expected = with(expected, {"closing 1", "begin 2"});
    if (all[at] == "closing 1") expected = with(expected, {"begin 2"});
    if (all[at] == "progress 2 5") expected = with(expected, {"closing 2"});
    if (all[at] == "session") expected = with(expected, {"disc"});
    CHECK(write.lines == expected);
    const std::string log = told.commands();
    if (at == 0) CHECK_THAT(log, !Contains("MODE-SELECT"));
    // What was read went out.
    CHECK(countOf("WRITE 2A", log) ==
          std::ranges::count_if(write.lines, [](const std::string& line) { return line.starts_with("read"); }));
    if (at == 0) CHECK(told.disc().status == DiscOpen);
    if (at > 0) CHECK(told.disc().status == DiscClosed);
  }
}

TEST_CASE("A write by the library that is stopped at whatever it tells asks for nothing more") {
  // The closings come as soon as the last piece is gone.
  const Lines all = with(bothTracks(), {"session"});
  for (std::size_t at = 0; at + 5 < all.size(); ++at) {
    ToldRecorder told;
    ToldWrite write;
    std::stop_source stop;
    write.onLine = [&](const std::string&) {
      if (write.lines.size() == at + 1) stop.request_stop();
    };
    CHECK(ToldRecorder::failureOf(
              [&] { told.recorder->write(orderOf(true, false), write, write, stop.get_token()); }) == "stopped");
    // The piece that is being made is made.
    std::size_t end = at + 1;
    if (at > 0)
      while (!all[end - 1].starts_with("read")) ++end;
    CHECK(write.lines == Lines(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(end)));
    CHECK(told.disc().status == (at == 0 ? DiscEmpty : DiscClosed));
  }
}

TEST_CASE("A disc is spoilt where the first thing that its write tells is not borne") {
  for (const bool library : {true, false}) {
    ToldRecorder told;
    ToldWrite write;
    write.onLine = [](const std::string& line) {
      if (line == "track 1 of 20") throw Stopped();
    };
    CHECK(ToldRecorder::failureOf([&] { told.recorder->write(orderOf(library, false), write, write, {}); }) ==
          "stopped");
    CHECK(told.disc().status == DiscClosed);
  }
}

TEST_CASE("A drive hears how it is to write before the speed, and a closing is told before the drive hears of it") {
  ToldRecorder told;
  ToldWrite write;
  write.onLine = [&](const std::string& line) {
    if (line == "closing 1") CHECK_THAT(told.drive.commands(), !Contains("SYNCHRONIZE-CACHE"));
    if (line == "begin 2") CHECK_THAT(told.drive.commands(), Contains("CLOSE-TRACK-SESSION 5B 00 01"));
  };
  told.recorder->write(orderOf(false, false), write, write, {});
  const std::string log = told.drive.commands();
  CHECK(log.find("MODE-SELECT") < log.find("SET-CD-SPEED"));
  CHECK(log.find("SET-CD-SPEED") < log.find("SEND-OPC"));
}

TEST_CASE("A write that is given up is waited for, and not without a nap") {
  const int before = napsTaken();
  // The library may be done before anybody looks.
  for (int turn = 0; turn < 50 && napsTaken() == before; ++turn) {
    ToldRecorder told;
    ToldWrite write;
    write.onLine = [](const std::string& line) {
      if (line == "progress 1 1") throw Stopped();
    };
    CHECK(ToldRecorder::failureOf([&] { told.recorder->write(orderOf(true, true), write, write, {}); }) == "stopped");
  }
  CHECK(napsTaken() > before);
}

TEST_CASE("A test of a write leaves the disc as it was where it fails, and where it is stopped") {
  for (const bool library : {true, false})
    for (const bool fails : {true, false}) {
      ToldRecorder told;
      WriteOrder order = orderOf(library, false);
      order.test = true;
      ToldWrite write;
      std::stop_source stop;
      write.onLine = [&](const std::string& line) {
        if (line != "progress 1 6") return;
        if (fails) throw deviceError(sense::readError, "a source");
        stop.request_stop();
      };
      CHECK(ToldRecorder::failureOf([&] { told.recorder->write(order, write, write, stop.get_token()); }) ==
            (fails ? "a source (3/11/00)" : "stopped"));
      CHECK(told.disc().status == DiscEmpty);
      CHECK_THAT(told.drive.commands(), !Contains("CLOSE-TRACK-SESSION 5B 00 02"));
    }
}

TEST_CASE("A test closes nothing and is not calibrated for") {
  ToldRecorder told;
  WriteOrder order = orderOf(false, false);
  order.test = true;
  CHECK(written(told, order) == bothTracks());
  CHECK_THAT(told.commands(), !Contains("SEND-OPC") && !Contains("5B 00 02"));
  CHECK(told.disc().status == DiscEmpty);
  order.test = false;
  CHECK(written(told, order) == bothTracks());
  CHECK_THAT(told.commands(), Contains("SEND-OPC 54 01") && !Contains("5B 00 02"));
  order.test = order.closeSession = true;
  CHECK(written(told, order) == with(bothTracks(), {"session"}));
  CHECK_THAT(told.commands(), !Contains("SEND-OPC") && !Contains("5B 00 02"));
}

}  // namespace trackloom::engines::libburn
