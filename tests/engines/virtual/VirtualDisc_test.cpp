#include "engines/virtual/VirtualDisc.h"

#include <catch2/catch.hpp>
#include <random>
#include <string>

#include "engines/virtual/Sandbox.h"
#include "runtime/IniFile.h"

namespace trackloom::engines::virtualrecorder {

using Catch::Matchers::Contains;
using Catch::Matchers::StartsWith;

namespace {

const char* const twoTracks =
    "[disc]\nmedium = CD-R\nstatus = open\nblocks = 359849\n"
    "[session 1]\nstatus = incomplete\n"
    "[track 1]\nsession = 1\nkind = audio\nstart = 0\nlength = 300\npregap = 0\n"
    "[track 2]\nsession = 1\nkind = audio\nstart = 450\nlength = 200\npregap = 150\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  REQUIRE(at != std::string::npos);
  return text.replace(at, from.size(), to);
}

}  // namespace

TEST_CASE("A blank disc is empty and takes 80 minutes of either kind from block 0") {
  const DiscState state = VirtualDisc{}.state();
  CHECK(state.status == DiscEmpty);
  CHECK(state.type == DiscTypeCdRom);
  CHECK(state.sessions == 0);
  CHECK(state.lastSession == SessionEmpty);
  CHECK(state.freeAudioBlocks == 359849);
  CHECK(state.freeDataBlocks == 359849);
  CHECK(state.nextWritable == 0);
  CHECK_FALSE(state.rewritable);
}

TEST_CASE("A write that closes the disc leaves it closed without room") {
  const DiscState state = VirtualDisc{}.afterWriting(audioOrder({300, 200}, true, true)).state();
  CHECK(state.status == DiscClosed);
  CHECK(state.sessions == 1);
  CHECK(state.lastSession == SessionClosed);
  CHECK(state.freeAudioBlocks == 0);
  CHECK(state.freeDataBlocks == 0);
}

TEST_CASE("A write that closes the session only leaves the disc open behind the gap between sessions") {
  VirtualDisc disc = VirtualDisc{}.afterWriting(dataOrder(1000, true, false));
  CHECK(disc.state().status == DiscOpen);
  CHECK(disc.state().lastSession == SessionClosed);
  CHECK(disc.state().sessions == 1);
  CHECK(disc.state().nextWritable == 1000 + 11400);
  CHECK(disc.state().freeDataBlocks == 359849 - 12400);
  disc = disc.afterWriting(dataOrder(500, true, false));
  CHECK(disc.state().sessions == 2);
  CHECK(disc.state().nextWritable == 12400 + 500 + 6900);
  CHECK(disc.state().freeDataBlocks == 359849 - 19800);
}

TEST_CASE("A write that closes nothing leaves an incomplete session, which the next write continues") {
  VirtualDisc disc = VirtualDisc{}.afterWriting(audioOrder({300, 200}, false, false));
  CHECK(disc.state().status == DiscOpen);
  CHECK(disc.state().lastSession == SessionIncomplete);
  CHECK(disc.state().sessions == 1);
  CHECK(disc.state().nextWritable == 650 + 150);
  CHECK(disc.state().freeAudioBlocks == 359849 - 800);
  disc = disc.afterWriting(audioOrder({100}, false, true));
  CHECK(disc.state().status == DiscClosed);
  REQUIRE(disc.sessions.size() == 1);
  CHECK(disc.sessions[0].closed);
  CHECK(disc.sessions[0].tracks == std::vector<VirtualTrack>{{AudioBlocks, 0, 300, 0},
                                                             {AudioBlocks, 450, 200, 150},
                                                             {AudioBlocks, 800, 100, 150}});
}

TEST_CASE("The pause of the order lies before every audio track but the first of the disc") {
  WriteOrder order = audioOrder({300, 200, 100}, true, true);
  order.pause = 0;
  CHECK(VirtualDisc{}.afterWriting(order).tracks() ==
        std::vector<VirtualTrack>{{AudioBlocks, 0, 300, 0}, {AudioBlocks, 300, 200, 0}, {AudioBlocks, 500, 100, 0}});
  order.pause = 75;
  const VirtualDisc open = VirtualDisc{}.afterWriting(audioOrder({1000}, false, false));
  CHECK(open.afterWriting(order).tracks()[1] == VirtualTrack{AudioBlocks, 1075, 300, 75});
}

TEST_CASE("An order that just fits is taken, and one block more is refused") {
  CHECK(VirtualDisc{}.afterWriting(audioOrder({359849}, true, true)).end() == 359849);
  CHECK(VirtualDisc{}.afterWriting(audioOrder({100000, 359849 - 100150}, true, true)).end() == 359849);
  const auto write = [](const WriteOrder& order) { return failureOf([&] { VirtualDisc{}.afterWriting(order); }); };
  CHECK_THAT(write(audioOrder({359850}, true, true)),
             StartsWith("056300 the disc has 359849 blocks left, and 359850 are needed"));
  CHECK_THAT(write(audioOrder({100000, 359849 - 100149}, true, true)), Contains("359850 are needed"));
  CHECK_THAT(write(audioOrder({2147483647, 2147483647}, true, true)), StartsWith("056300 "));
  CHECK_THAT(write(audioOrder({1, 2147483647}, true, true)), StartsWith("056300 "));
}

TEST_CASE("A pause longer than the usual one before the first of further tracks counts, too") {
  const VirtualDisc open = VirtualDisc{}.afterWriting(audioOrder({1000}, false, false));
  WriteOrder order = audioOrder({359849 - 1000 - 4500}, true, true);
  order.pause = 4500;
  CHECK(open.afterWriting(order).end() == 359849);
  ++order.trackBlocks[0];
  CHECK(failureOf([&] { open.afterWriting(order); }) ==
        "056300 the disc ends at block 359849, and the tracks would reach to block 359850 (5/63/00)");
}

TEST_CASE("Each kind has its own room where disc.ini says so") {
  const VirtualDisc disc =
      VirtualDisc::parse("[disc]\nmedium = CD-R\nstatus = blank\nblocks = 1000\naudioBlocks = 700\ndataBlocks = 500\n");
  CHECK(disc.state().freeAudioBlocks == 700);
  CHECK(disc.state().freeDataBlocks == 500);
  CHECK(failureOf([&] { disc.afterWriting(dataOrder(501, true, true)); }).starts_with("056300"));
  CHECK(VirtualDisc::parse(disc.ini()) == disc);
  CHECK(disc.afterWriting(audioOrder({100}, false, false)).state().freeDataBlocks == 250);
}

TEST_CASE("Closed and spoilt discs, the other kind and a hundredth track are refused") {
  const VirtualDisc closed = VirtualDisc{}.afterWriting(audioOrder({300}, true, true));
  CHECK_THAT(failureOf([&] { closed.afterWriting(audioOrder({1}, true, true)); }),
             StartsWith("053005 the disc is closed"));
  VirtualDisc spoilt;
  spoilt.status = VirtualDisc::Status::Writing;
  CHECK_THAT(failureOf([&] { spoilt.afterWriting(audioOrder({1}, true, true)); }),
             StartsWith("053005 the disc is spoilt"));
  const VirtualDisc audio = VirtualDisc{}.afterWriting(audioOrder({300}, true, false));
  CHECK_THAT(failureOf([&] { audio.afterWriting(dataOrder(1, true, true)); }), StartsWith("056400 data cannot"));
  const VirtualDisc data = VirtualDisc{}.afterWriting(dataOrder(300, true, false));
  CHECK_THAT(failureOf([&] { data.afterWriting(audioOrder({1}, true, true)); }), StartsWith("056400 audio"));
  const VirtualDisc full = VirtualDisc{}.afterWriting(audioOrder(std::vector<std::int32_t>(99, 300), false, false));
  CHECK(full.tracks().size() == 99);
  CHECK_THAT(failureOf([&] { full.afterWriting(audioOrder({1}, true, true)); }), StartsWith("057205 "));
}

TEST_CASE("An order without tracks, with an empty track or with an unknown kind is refused in words") {
  const auto write = [](WriteOrder order) { return failureOf([&] { VirtualDisc{}.afterWriting(order); }); };
  CHECK_THAT(write(audioOrder({}, true, true)), StartsWith("052600 there is no track"));
  CHECK_THAT(write(audioOrder({300, 0}, true, true)), StartsWith("052600 "));
  CHECK_THAT(write(audioOrder({-5}, true, true)), StartsWith("052600 "));
  WriteOrder order = audioOrder({300}, true, true);
  order.pause = -1;
  CHECK_THAT(write(order), StartsWith("052600 "));
  order.pause = 2147483647;
  CHECK_THAT(write(order), StartsWith("052600 "));
  order.pause = 150;
  order.kind = static_cast<BlockKind>(7);
  CHECK_THAT(write(order), StartsWith("052600 "));
}

TEST_CASE("A disc.ini written by hand is read") {
  const VirtualDisc disc = VirtualDisc::parse(twoTracks);
  CHECK(disc.medium == VirtualDisc::Medium::CdR);
  CHECK(disc.status == VirtualDisc::Status::Open);
  REQUIRE(disc.sessions.size() == 1);
  CHECK_FALSE(disc.sessions[0].closed);
  CHECK(disc.tracks() == std::vector<VirtualTrack>{{AudioBlocks, 0, 300, 0}, {AudioBlocks, 450, 200, 150}});
}

TEST_CASE("A disc.ini is written line by line as documented") {
  const VirtualDisc disc = VirtualDisc{}.afterWriting(audioOrder({300, 200}, true, false));
  CHECK(disc.ini() ==
        "; A disc of the virtual recorder. Addresses and lengths are blocks of 1/75 second.\n"
        "\n[disc]\nmedium = CD-R\nstatus = open\nblocks = 359849\n"
        "\n[session 1]\nstatus = closed\n"
        "\n[track 1]\nsession = 1\nkind = audio\nstart = 0\nlength = 300\npregap = 0\n"
        "\n[track 2]\nsession = 1\nkind = audio\nstart = 450\nlength = 200\npregap = 150\n");
}

TEST_CASE("A session that is closed takes the names of its tracks, and the first one the disc's") {
  WriteOrder order = audioOrder({300, 200}, true, false);
  order.text = {{"Album", "Artist"}, {{"One", ""}, {"Two; 2", "Guest"}}};
  VirtualDisc disc = VirtualDisc{}.afterWriting(order);
  CHECK(disc.ini() ==
        "; A disc of the virtual recorder. Addresses and lengths are blocks of 1/75 second.\n"
        "\n[disc]\nmedium = CD-R\nstatus = open\nblocks = 359849\ntitle = Album\nperformer = Artist\n"
        "\n[session 1]\nstatus = closed\n"
        "\n[track 1]\nsession = 1\nkind = audio\nstart = 0\nlength = 300\npregap = 0\ntitle = One\n"
        "\n[track 2]\nsession = 1\nkind = audio\nstart = 450\nlength = 200\npregap = 150\ntitle = Two; 2\n"
        "performer = Guest\n");
  CHECK(VirtualDisc::parse(disc.ini()) == disc);
  CHECK(disc.cueSheet() ==
        "PERFORMER \"Artist\"\r\nTITLE \"Album\"\r\nFILE \"disc.bin\" BINARY\r\n"
        "  TRACK 01 AUDIO\r\n    TITLE \"One\"\r\n    INDEX 01 00:00:00\r\n"
        "  TRACK 02 AUDIO\r\n    TITLE \"Two; 2\"\r\n    PERFORMER \"Guest\"\r\n"
        "    INDEX 00 00:04:00\r\n    INDEX 01 00:06:00\r\n");

  order.text = {{"Later", "Other"}, {{"Three", "A \"B\""}}};
  disc = disc.afterWriting(order);
  CHECK(disc.name == DiscName{"Album", "Artist"});
  CHECK(disc.tracks()[1].name == DiscName{"Two; 2", "Guest"});
  CHECK(disc.tracks()[2].name == DiscName{"Three", "A \"B\""});
  CHECK(disc.tracks()[3].name == DiscName{});
  CHECK(disc.state().text ==
        DiscText{{"Album", "Artist"}, {{"One", ""}, {"Two; 2", "Guest"}, {"Three", "A \"B\""}, {}}});
  CHECK(disc.cueSheet().find("    PERFORMER \"A 'B'\"\r\n") != std::string::npos);
}

TEST_CASE("A session that stays open takes no names, and later ones are those of their own tracks") {
  WriteOrder order = audioOrder({300}, false, false);
  order.text = {{"Album", "Artist"}, {{"One", ""}}};
  VirtualDisc disc = VirtualDisc{}.afterWriting(order);
  CHECK(disc.name == DiscName{});
  CHECK(disc.tracks()[0].name == DiscName{});
  order.closeDisc = true;
  disc = disc.afterWriting(order);
  CHECK(disc.name == DiscName{"Album", "Artist"});
  CHECK(disc.tracks()[0].name == DiscName{});
  CHECK(disc.tracks()[1].name == DiscName{"One", ""});
}

TEST_CASE("A blank disc bears no name any more") {
  VirtualDisc disc = VirtualDisc::parse("[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 359849\n");
  WriteOrder order = audioOrder({300}, true, true);
  order.text = {{"Album", "Artist"}, {{"One", ""}}};
  CHECK(disc.afterWriting(order).erased() == disc);
}

TEST_CASE("The longest description there can be stays within the size limit of the reader") {
  VirtualDisc disc;
  for (int session = 0; session < 50; ++session) disc = disc.afterWriting(audioOrder({1}, true, false));
  disc = disc.afterWriting(audioOrder(std::vector<std::int32_t>(49, 10), true, true));
  CHECK(disc.tracks().size() == 99);
  const std::string sign = "\xE2\x99\xAA";
  std::string longest;
  for (int count = 0; count < 200; ++count) longest += sign;
  const DiscName name{longest, "x" + longest};
  const DiscText text = fitted({name, std::vector<DiscName>(99, name)});
  disc.name = text.disc;
  for (VirtualSession& session : disc.sessions)
    for (VirtualTrack& track : session.tracks) track.name = {longest.substr(0, 30), longest.substr(0, 30)};
  CHECK(disc.ini().size() < IniFile::sizeLimit);
  CHECK(VirtualDisc::parse(disc.ini()) == disc);
}

TEST_CASE("A rewritable disc says so in every state") {
  VirtualDisc disc = VirtualDisc::parse("[disc]\nmedium = CD-RW\nstatus = blank\nblocks = 359849\n");
  CHECK(disc.state().rewritable);
  disc = disc.afterWriting(dataOrder(10, true, true));
  CHECK(disc.state().rewritable);
  disc.status = VirtualDisc::Status::Writing;
  CHECK(disc.state().rewritable);
}

TEST_CASE("A disc.ini that breaks a law is damaged, and the words say where") {
  const auto damage = [](const std::string& from, const std::string& to) -> std::string {
    try {
      VirtualDisc::parse(replaced(twoTracks, from, to));
    } catch (const DamagedDisc& damaged) {
      return damaged.what();
    }
    return "none";
  };
  CHECK(damage("CD-R", "DVD") == "disc.ini, [disc]: medium is missing or not a word that is known");
  CHECK_THAT(damage("status = open", "status = fine"), Contains("[disc]: status"));
  CHECK_THAT(damage("status = open", "status = blank"), Contains("a blank disc cannot have sessions"));
  CHECK_THAT(damage("status = open", "status = closed"), Contains("[session 1]: it must be closed"));
  CHECK_THAT(damage("blocks = 359849", "blocks = 649"), Contains("[track 2]: it ends behind the end"));
  CHECK_THAT(damage("blocks = 359849", "blocks = -1"), Contains("[disc]: blocks"));
  CHECK_THAT(damage("blocks = 359849", "blocks = 449850"), Contains("0 to 449849"));
  CHECK_THAT(damage("blocks = 359849", "blocks = 99999999999999999999"), Contains("[disc]: blocks"));
  CHECK_THAT(damage("blocks = 359849", "blocks = 359849\ndataBlocks = much"), Contains("[disc]: dataBlocks"));
  CHECK_THAT(damage("[session 1]", "[session 2]"), Contains("[session 1]: status"));
  CHECK_THAT(damage("[track 2]", "[track 3]"), Contains("[track 2]: kind"));
  CHECK_THAT(damage("session = 1", "session = 2"), Contains("[track 1]: session"));
  CHECK_THAT(damage("length = 300", "length = 0"), Contains("[track 1]: length"));
  CHECK_THAT(damage("length = 300", "length = 301"), Contains("[track 2]: it overlaps"));
  CHECK_THAT(damage("start = 450", "start = 2147483647"), Contains("[track 2]: start"));
  CHECK_THAT(damage("pregap = 150", "pregap = 151"), Contains("[track 2]: it overlaps"));
  CHECK_THAT(damage("start = 450\nlength = 200\npregap = 150\n", "start = 450"), Contains("[track 2]: length"));
  CHECK_THAT(damage("kind = audio", "kind = data"), Contains("both kinds on a disc that is not closed"));
  CHECK_THAT(damage("[track 1]", "[session 2]\nstatus = closed\n[track 1]"),
             Contains("[session 1]: it must be closed"));
  CHECK(damage("CD-R", "CD-RW") == "none");
}

TEST_CASE("A disc that is said to be open or closed without a session is damaged") {
  for (const char* status : {"open", "closed"})
    CHECK_THROWS_WITH(VirtualDisc::parse("[disc]\nmedium = CD-R\nblocks = 9\nstatus = " + std::string(status)),
                      "disc.ini, [disc]: a disc that is not blank must have a session");
  CHECK_THROWS_AS(VirtualDisc::parse(""), DamagedDisc);
  CHECK_THROWS_AS(VirtualDisc::parse(std::string(1 << 20, '[')), DamagedDisc);
}

TEST_CASE("A description with a hundred tracks or sessions is damaged") {
  std::string text = "[disc]\nmedium = CD-R\nstatus = open\nblocks = 359849\n";
  for (int number = 1; number <= 100; ++number) text += "[session " + std::to_string(number) + "]\nstatus = closed\n";
  CHECK_THROWS_WITH(VirtualDisc::parse(text), "disc.ini has more than 99 sessions");
  text = "[disc]\nmedium = CD-R\nstatus = open\nblocks = 359849\n[session 1]\nstatus = closed\n";
  for (int number = 1; number <= 100; ++number) text += "[track " + std::to_string(number) + "]\n";
  CHECK_THROWS_WITH(VirtualDisc::parse(text), "disc.ini has more than 99 tracks");
}

TEST_CASE("Whatever is done to a disc.ini, it is damaged or keeps the laws") {
  std::mt19937 random(7);
  const std::string base = VirtualDisc::parse(twoTracks).afterWriting(audioOrder({5, 6}, true, false)).ini();
  int understood = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text = base;
    for (std::uint32_t change = 0; change < 1 + random() % 3; ++change) {
      const std::size_t at = random() % text.size();
      const std::uint32_t way = random() % 4;
      if (way == 0) text[at] = static_cast<char>('0' + random() % 10);
      if (way == 1) text[at] = static_cast<char>(random());
      if (way == 2) text.erase(at, random() % 60);
      if (way == 3) text.insert(at, text.substr(random() % text.size(), random() % 60));
      if (text.empty()) text = " ";
    }
    try {
      const VirtualDisc disc = VirtualDisc::parse(text);
      const DiscState state = disc.state();
      CHECK(state.freeAudioBlocks >= 0);
      CHECK(state.freeAudioBlocks <= mostBlocks);
      CHECK(disc.end() <= mostBlocks);
      CHECK(VirtualDisc::parse(disc.ini()) == disc);
      ++understood;
    } catch (const DamagedDisc&) {
      continue;
    }
  }
  CHECK(understood > 100);
}

}  // namespace trackloom::engines::virtualrecorder
