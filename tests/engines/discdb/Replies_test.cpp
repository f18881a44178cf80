#include "engines/discdb/Replies.h"

#include <catch2/catch.hpp>
#include <string>
#include <vector>

#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

namespace {

std::string entry(const std::string& lines) {
  return "210 rock 940aac0d CD database entry follows (until terminating `.')\r\n" + lines + ".\r\n";
}

/// "<category> <id>"; "none" and "broken" where there is no match and no reply of the protocol.
std::string matchIn(const std::string& reply) {
  try {
    const auto place = firstMatch(reply);
    return place ? place->category + " " + place->id : "none";
  } catch (const RuntimeError&) {
    return "broken";
  }
}

/// "artist|title|genre|year|title of track 1|..."; "broken" where it is no entry.
std::string recordIn(const std::string& reply, const std::string& category = "") {
  try {
    const DiscRecord record = entryOf(reply, category);
    std::string text = record.Artist + "|" + record.Title + "|" + record.Genre + "|" + record.Year;
    for (const DiscTrackRecord& track : record.Tracks) text += "|" + track.Title;
    return text;
  } catch (const RuntimeError&) {
    return "broken";
  }
}

std::string wordsOf(const std::string& reply) {
  try {
    firstMatch(reply);
  } catch (const RuntimeError& error) {
    return error.description();
  }
  return "";
}

struct Row {
  std::string reply;
  std::string result;
};

}  // namespace

TEST_CASE("The first match of a reply counts, exact or not") {
  const std::vector<Row> rows{
      {"200 rock 940aac0d Marina / Jewels\r\n", "rock 940aac0d"},
      {"200 rock 940aac0d Marina / Jewels", "rock 940aac0d"},
      {"200 rock 940aac0d", "rock 940aac0d"},
      {"200 misc 940AAC0D A / B\n", "misc 940AAC0D"},
      {"200 AZaz09 0123afAF A / B\n", "AZaz09 0123afAF"},
      {"202 No match found\r\n", "none"},
      {"202", "none"},
      {"210 Found exact matches, list follows (until terminating `.')\r\nfolk 8a09b20b A / B\r\nrock 00000001 C / "
       "D\r\n.\r\n",
       "folk 8a09b20b"},
      {"211 Found inexact matches, list follows\nfolk 8a09b20b A / B\n.", "folk 8a09b20b"},
      {"211 Found inexact matches, list follows\nfolk 8a09b20b A / B\n.\nrock 00000001 C / D\n", "folk 8a09b20b"},
      {"210 Found exact matches, list follows\r\n.\r\n", "none"},
  };
  for (const Row& row : rows) CHECK(matchIn(row.reply) == row.result);
}

TEST_CASE("What is no whole reply to a question is a failure") {
  const std::vector<std::string> broken{
      "",
      "\r\n",
      "2",
      "20 rock 940aac0d A / B",
      "2000 rock 940aac0d A / B",
      "-20 rock 940aac0d A / B",
      " 200 rock 940aac0d A / B",
      "<html><body>200 OK</body></html>",
      std::string("200\0rock 940aac0d A / B", 23),
      "200",
      "200 rock",
      "200 rock 940aac0 A / B",
      "200 rock 940aac0d1 A / B",
      "200 rock 940aac0g A / B",
      "200  940aac0d A / B",
      "200 ../rock 940aac0d A / B",
      "200 ro&ck 940aac0d A / B",
      "200 " + std::string(33, 'a') + " 940aac0d A / B",
      "210 Found exact matches, list follows\r\nfolk 8a09b20b A / B\r\n",
      "210 Found exact matches, list follows\r\nfolk 8a09b20b A",
      "210 Found exact matches, list follows\r\n",
      "210",
      "211 Found inexact matches\r\n\r\n.\r\n",
      "201 OK, read only\r\n",
      "403 Database entry is corrupt\r\n",
      "409 No handshake\r\n",
      "417 Access limit exceeded, try again later\r\n",
      "500 Command syntax error\r\n",
      "530 Server error, server timeout\r\n",
  };
  for (const std::string& reply : broken) {
    INFO(reply);
    CHECK(matchIn(reply) == "broken");
  }
}

TEST_CASE("What the server says of a failure is passed on without what controls a terminal, and not for long") {
  CHECK(wordsOf("403 Database\x1B entry is corrupt\r\n") == "The disc database says: 403 Database entry is corrupt");
  CHECK(wordsOf("530 " + std::string(70000, 'x')) == "The disc database says: 530 " + std::string(200, 'x'));
}

TEST_CASE("An entry tells of the disc and its tracks") {
  const std::vector<Row> rows{
      {entry(
           "# xmcd\r\n#\r\n# Track frame offsets:\r\n#\t150\r\nDISCID=940aac0d\r\nDTITLE=Marina / "
           "Jewels\r\nDYEAR=2010\r\nDGENRE=Pop\r\nTTITLE0=One\r\nTTITLE1=Two\r\nEXTD=More\r\nEXTT0=\r\nPLAYORDER=\r\n"),
       "Marina|Jewels|Pop|2010|One|Two"},
      // Lines that end in LF alone.
      {"210 rock 940aac0d\nDTITLE=A / B\nTTITLE0=One\n.\n", "A|B|rock||One"},
      {"210 rock 940aac0d\nDTITLE=A / B\nTTITLE0=One\n.", "A|B|rock||One"},
      // Blanks belong to the values.
      {entry("DTITLE= A  /  B \r\nDYEAR= 1999\r\nTTITLE0= One \r\n"), " A | B |rock| 1999| One "},
      // The first separator parts artist and title; a slash without blanks is none.
      {entry("DTITLE=A / B / C\r\nTTITLE0=AC/DC / Title\r\n"), "A|B / C|rock||AC/DC / Title"},
      {entry("DTITLE=AC/DC / Live\r\n"), "AC/DC|Live|rock|"},
      {entry("DTITLE=AC/DC\r\n"), "AC/DC|AC/DC|rock|"},
      {entry("DTITLE= / B\r\n"), "|B|rock|"},
      // Values in parts, also where a part ends within the separator, an escape or a character.
      {entry("DTITLE=A \r\nDTITLE=/ B\r\nTTITLE0=One and \r\nTTITLE0=two\r\nTTITLE1=x\\\r\nTTITLE1=\\y\xC3\r\n"
             "TTITLE1=\xA9\r\n"),
       "A|B|rock||One and two|x\\y\xC3\xA9"},
      // The parts of a value need not stand together.
      {entry("TTITLE1=Two\r\nTTITLE0=One\r\nTTITLE1= too\r\n"), "||rock||One|Two too"},
      // Escapes; what is none stays.
      {entry("DTITLE=B\\\\C\r\nTTITLE0=a\\nb\\tc\\\\nd\\xe\\\r\n"), "B\\C|B\\C|rock||abc\\nd\\xe\\"},
      {entry("DTITLE=B\r\nTTITLE0=a=b\r\n"), "B|B|rock||a=b"},
      // Tracks that the entry passes over are there without a name.
      {entry("DTITLE=B\r\nTTITLE2=Three\r\n"), "B|B|rock||||Three"},
      // So are those with a blank one, but for the last.
      {entry("DTITLE=B\r\nTTITLE0=\r\nTTITLE1=Two\r\nTTITLE2=\r\nTTITLE3= \r\n"), "B|B|rock|||Two"},
      {entry("DTITLE=B\r\nTTITLE0=\r\nTTITLE1=\r\n"), "B|B|rock|"},
      {entry("DTITLE=B\r\nTTITLE00=x\r\nTTITLE-1=x\r\nTTITLE99=x\r\nTTITLE4294967296=x\r\nTTITLE=x\r\nttitle0=x\r\n"),
       "B|B|rock|"},
      {entry("no value\r\n\r\n=x\r\nDTITLE=B\r\n"), "B|B|rock|"},
      // Latin-1 and UTF-8, each value by itself.
      {entry("DTITLE=Bj\xF6rk / Vespert\xC3\xADne\r\nTTITLE0=\xC3\xA9\r\nTTITLE1=\xE9\r\n"),
       "Bj\xC3\xB6rk|Vespert\xC3\x83\xC2\xADne|rock||\xC3\xA9|\xC3\xA9"},
      {entry(std::string("DTITLE=A\0 / B\r\nTTITLE0=\xE2\x80\xAEgpj\r\n", 31)), "A|B|rock||gpj"},
      // What follows the end is not looked at.
      {entry("DTITLE=B\r\n") + "TTITLE0=x\r\n", "B|B|rock|"},
      {entry("DTITLE=B\r\n..\r\nTTITLE0=x\r\n"), "B|B|rock|"},
  };
  for (const Row& row : rows) CHECK(recordIn(row.reply) == row.result);
}

TEST_CASE("A genre is the entry's own, else the category by which it was asked for, else the reply's") {
  CHECK(recordIn(entry("DTITLE=B\r\nDGENRE=Ska\r\n"), "misc") == "B|B|Ska|");
  CHECK(recordIn(entry("DTITLE=B\r\nDGENRE= \r\n"), "misc") == "B|B|misc|");
  CHECK(recordIn(entry("DTITLE=B\r\nDGENRE=\r\n")) == "B|B|rock|");
  CHECK(recordIn("210 OK, CDDB database entry follows (until terminating marker)\nDTITLE=B\n.\n", "misc") ==
        "B|B|misc|");
  CHECK(recordIn("210 OK, CDDB database entry follows (until terminating marker)\nDTITLE=B\n.\n") == "B|B||");
}

TEST_CASE("What is no whole entry with names is a failure") {
  const std::vector<std::string> broken{
      "",
      "210 rock 940aac0d\r\n",
      "210 rock 940aac0d\r\nDTITLE=A / B\r\nTTITLE0=One\r\n",
      "210 rock 940aac0d\r\nDTITLE=A / B\r\nTTITLE0=One",
      "200 rock 940aac0d\r\nDTITLE=A / B\r\n.\r\n",
      "401 rock 940aac0d No such CD entry in database\r\n",
      "402 Server error\r\n",
      "403 Database entry is corrupt\r\n",
      "DTITLE=A / B\r\n.\r\n",
      entry(""),
      entry("DTITLE=\r\nTTITLE0= \r\n"),
      entry("DYEAR=1999\r\nDGENRE=Pop\r\n"),
  };
  for (const std::string& reply : broken) {
    INFO(reply);
    CHECK(recordIn(reply, "misc") == "broken");
  }
}

TEST_CASE("Ninety-nine tracks are the most, and a title of 64 KB stays whole") {
  std::string lines = "DTITLE=B\r\n";
  for (int track = 0; track < 120; ++track)
    lines += "TTITLE" + std::to_string(track) + "=" + std::to_string(track) + "\r\n";
  const DiscRecord record = entryOf(entry(lines));
  REQUIRE(record.Tracks.size() == 99);
  CHECK(record.Tracks.front().Title == "0");
  CHECK(record.Tracks.back().Title == "98");

  const std::string title(65536, 'x');
  CHECK(entryOf(entry("TTITLE0=" + title + "\r\n")).Tracks.front().Title == title);
}

}  // namespace trackloom::engines::discdb
