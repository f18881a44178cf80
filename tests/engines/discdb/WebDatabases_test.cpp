#include "engines/discdb/WebDatabases.h"

#include <sys/stat.h>

#include <atomic>
#include <catch2/catch.hpp>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "engines/discdb/DatabaseServer.h"
#include "engines/discdb/DiscNames.h"
#include "engines/discdb/HangingNames.h"
#include "engines/discdb/RealDiscs.h"
#include "engines/ground/EngineError.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"
#include "runtime/RuntimeError.h"

namespace trackloom::engines::discdb {

namespace {

using Wire = DatabaseServer::Wire;

constexpr const char* Exact = "200 rock 940aac0d Marina / Jewels\r\n";
constexpr const char* Entry =
    "210 rock 940aac0d CD database entry follows (until terminating `.')\r\n"
    "# xmcd\r\nDISCID=940aac0d\r\nDTITLE=Marina / Jewels\r\nTTITLE0=One\r\nTTITLE1=Two\r\n.\r\n";
constexpr const char* NoMatch = "202 No match found\r\n";
const DiscText names{"On the disc", "Its title", {"First", "Second"}};

std::string textOf(const std::vector<DiscRecord>& matches) {
  std::string text;
  for (const DiscRecord& match : matches) {
    text += "[" + match.Artist + "|" + match.Title + "|" + match.Genre + "|" + match.Year;
    for (const DiscTrackRecord& track : match.Tracks) text += "|" + track.Title;
    text += "]";
  }
  return text;
}

constexpr const char* EntryText = "[Marina|Jewels|rock||One|Two]";
constexpr const char* NamesText = "[On the disc|Its title|||First|Second]";

/// A program folder, a disc in drive D, and settings that lead to a server.
struct World {
  fakes::TempFolder folder;
  fakes::FakePatience patience;
  DiscServerSettings settings{"127.0.0.1", 9, "joe@example.org"};
  std::optional<DiscContents> disc = audioDisc();

  explicit World(const DatabaseServer* server = nullptr) {
    if (server != nullptr) settings.port = server->port();
  }

  /// Drive D alone, with the disc that lies in it now: a look that nobody waits for any more may come later.
  ContentsOf contents() const {
    return [disc = disc](const std::string& letter) { return letter == "D" ? disc : std::nullopt; };
  }

  /// What a look-up gives; ahead of it "failed " where it failed.
  std::string lookUp(int limit = 60) {
    WebDatabases databases(settings, HostPath(folder.path()), contents(), patience);
    const auto database = databases.create();
    return lookUp(*database, limit);
  }
  static std::string lookUp(DiscDatabase& database, int limit = 60) {
    database.ConfigureServer("", 80, limit, "", 80, "", "");
    try {
      database.QueryDrive(1, "D", "", "");
    } catch (const RuntimeError&) {
      return "failed " + textOf(database.Matches());
    }
    return textOf(database.Matches());
  }
  void keep(const std::string& reply) const { folder.write("Disc Names/940aac0d", reply); }
};

std::string targetOf(const std::string& request) {
  const std::size_t begin = request.find(' ') + 1;
  return request.substr(begin, request.find(' ', begin) - begin);
}

}  // namespace

TEST_CASE("A disc is asked for once and its first match read once, with the user's name and place") {
  DatabaseServer server(answering(Exact, Entry));
  World world(&server);
  CHECK(world.lookUp() == EntryText);
  REQUIRE(server.requests().size() == 2);
  CHECK(targetOf(server.requests()[0]) ==
        "/~cddb/cddb.cgi?cmd=cddb+query+940aac0d+13+150+15239+29625+45763+61420+75862+91642+108918+123698+139895+"
        "153589+169239+188495+2734&hello=joe+example.org+Trackloom+5.0&proto=6");
  CHECK(targetOf(server.requests()[1]) ==
        "/~cddb/cddb.cgi?cmd=cddb+read+rock+940aac0d&hello=joe+example.org+Trackloom+5.0&proto=6");
}

TEST_CASE("Of several matches only the first is read, under its own id") {
  DatabaseServer server(
      answering("211 Found inexact matches, list follows\r\nfolk 8a09b20d A / B\r\nrock 940aac0d C / "
                "D\r\n.\r\n",
                Entry));
  World world(&server);
  CHECK(world.lookUp() == "[Marina|Jewels|folk||One|Two]");
  REQUIRE(server.requests().size() == 2);
  CHECK(asksFor(server.requests()[1], "read+folk+8a09b20d&hello=joe"));
}

TEST_CASE("Signs in the user's address are data") {
  DatabaseServer server(answering(NoMatch, ""));
  World world(&server);
  world.settings.email = "a&proto=1\"+b%#/?@c@ex\xC3\xA4mple.org";
  world.lookUp();
  // Bytes beyond ASCII are no word of the protocol's greeting.
  CHECK(server.requests().empty());
  world.settings.email = "a&proto=1\"+b%#/?@c@example.org";
  world.lookUp();
  REQUIRE(server.requests().size() == 1);
  const std::string target = targetOf(server.requests()[0]);
  CHECK(target.substr(target.find("&hello=")) ==
        "&hello=a%26proto%3d1%22%2bb%25%23%2f%3f%40c+example.org+Trackloom+5.0&proto=6");
}

TEST_CASE("Without the user's address nothing is sent, and that is no failure") {
  for (const char* email : {"", "joe", "joe@", "@example.org", "@", "joe smith@example.org", "joe@exam ple.org",
                            "joe@example.org\tx", "joe\r\nX: y@example.org"}) {
    DatabaseServer server(answering(Exact, Entry));
    World world(&server);
    world.settings.email = email;
    INFO(email);
    CHECK(world.lookUp().empty());
    world.disc->text = names;
    CHECK(world.lookUp() == NamesText);
    CHECK(server.requests().empty());
  }
  DatabaseServer server(answering(Exact, Entry));
  World world(&server);
  world.settings.email = std::string(243, 'x') + "@example.org";
  world.lookUp();
  CHECK(server.requests().empty());
  world.settings.email.erase(0, 1);
  world.lookUp();
  CHECK(server.requests().size() == 2);
}

TEST_CASE("A reply is kept as the server sent it, under the disc's own id") {
  DatabaseServer server(answering("211 Inexact\r\nx/../.. 940aac0d A / B\r\n.\r\n", Entry));
  World world(&server);
  CHECK(world.lookUp() == "failed ");
  CHECK_FALSE(world.folder.has("Disc Names"));

  DatabaseServer sound(answering("200 folk 00000001 A / B\r\n", Entry));
  world.settings.port = sound.port();
  world.lookUp();
  CHECK(world.folder.read("Disc Names/940aac0d") == Entry);
  CHECK(std::distance(std::filesystem::directory_iterator(world.folder / "Disc Names"), {}) == 1);
}

TEST_CASE("A later reply takes the place of an earlier one, and what is no entry does not") {
  const std::string later = "210 rock 940aac0d\r\nDTITLE=Corrected\r\n.\r\n";
  World world;
  world.keep(Entry);
  DatabaseServer broken(answering(Exact, "210 rock 940aac0d\r\nDTITLE=Half"));
  world.settings.port = broken.port();
  CHECK(world.lookUp() == std::string("failed ") + EntryText);
  CHECK(world.folder.read("Disc Names/940aac0d") == Entry);
  DatabaseServer server(answering(Exact, later));
  world.settings.port = server.port();
  CHECK(world.lookUp() == "[Corrected|Corrected|rock|]");
  CHECK(world.folder.read("Disc Names/940aac0d") == later);
}

TEST_CASE("Where the server gives nothing the earlier reply counts, then the disc's own names, then none") {
  const std::vector<DatabaseServer::Script> scripts{
      answering(NoMatch, Entry),
      answering("409 No handshake\r\n", Entry),
      answering(Exact, "401 rock 940aac0d No such CD entry in database\r\n"),
      answering(Exact, ""),
      answering("\xFF\xFE", Entry),
      [](Wire& wire, const std::string&) { wire.answer("", "500 Internal Server Error"); },
      [](Wire&, const std::string&) {},
  };
  for (const DatabaseServer::Script& script : scripts) {
    DatabaseServer server(script);
    World world(&server);
    const std::string outcome = world.lookUp();
    CHECK((outcome.empty() || outcome == "failed "));
    world.disc->text = names;
    CHECK(world.lookUp() == outcome + NamesText);
    world.keep(Entry);
    CHECK(world.lookUp() == outcome + EntryText);
    world.keep("210 rock 940aac0d\r\nDTITLE=Half");
    CHECK(world.lookUp() == outcome + NamesText);
  }
}

TEST_CASE("Only a failure of the server is a failure, not a disc that it does not know") {
  DatabaseServer unknown(answering(NoMatch, ""));
  World world(&unknown);
  CHECK(world.lookUp().empty());
  world.settings.port = 9;
  CHECK(world.lookUp() == "failed ");
  world.settings.host = "no host";
  CHECK(world.lookUp() == "failed ");
}

TEST_CASE("A known disc has its names without any server, and its server is still asked first") {
  DatabaseServer server(answering(Exact, Entry));
  World world(&server);
  world.keep("210 rock 940aac0d\r\nDTITLE=Earlier\r\n.\r\n");
  CHECK(world.lookUp() == EntryText);
  world.settings.email.clear();
  CHECK(world.lookUp() == EntryText);
  CHECK(server.requests().size() == 2);
  world.disc = enhancedDisc();
  CHECK(world.lookUp().empty());
}

TEST_CASE("The disc's own names are data too, and blanks alone are none") {
  World world;
  world.settings.email.clear();
  world.disc->text = {"Bj\xF6rk\n", std::string("A\0B", 3), {" ", "a/b"}};
  CHECK(world.lookUp() == "[Bj\xC3\xB6rk|AB|||01|a/b]");
  world.disc->text = {"", " ", {" ", ""}};
  CHECK(world.lookUp().empty());
  world.disc->text = {"", "Title", {" ", ""}};
  CHECK(world.lookUp() == "[|Title||]");
  world.disc->text = {"", "", {"", "Two", ""}};
  CHECK(world.lookUp() == "[||||01|Two]");
}

TEST_CASE("A track that a disc leaves out between named ones has its number") {
  World world;
  world.settings.email.clear();
  world.disc->text.titles = {"", "2nd", "", "", "", "", "", "", " ", "", "11th"};
  CHECK(world.lookUp() == "[||||01|2nd|03|04|05|06|07|08|09|10|11th]");
}

TEST_CASE(
    "A look-up without a disc, of a drive that fails, or of contents that make no sense, fails and sends nothing") {
  DatabaseServer server(answering(Exact, Entry));
  World world(&server);
  world.disc = std::nullopt;
  CHECK(world.lookUp() == "failed ");
  world.disc = discAt({300, 300}, 600);
  CHECK(world.lookUp() == "failed ");
  const ContentsOf failing = [](const std::string&) -> std::optional<DiscContents> {
    throw EngineError(ErrorKind::Device, 0, "no seek complete");
  };
  WebDatabases databases(world.settings, HostPath(world.folder.path()), failing, world.patience);
  CHECK(World::lookUp(*databases.create()) == "failed ");
  CHECK(server.requests().empty());
}

TEST_CASE("The matches of an earlier look-up are gone with the next, also where that fails") {
  DatabaseServer server(answering(Exact, Entry));
  World world(&server);
  const ContentsOf drive = [&world](const std::string&) { return world.disc; };
  WebDatabases databases(world.settings, HostPath(world.folder.path()), drive, world.patience);
  const auto database = databases.create();
  CHECK(database->Matches().empty());
  CHECK(World::lookUp(*database) == EntryText);
  CHECK(textOf(database->Matches()) == EntryText);
  world.disc = std::nullopt;
  CHECK(World::lookUp(*database) == "failed ");
  world.disc = audioDisc();
  CHECK(World::lookUp(*database) == EntryText);
}

TEST_CASE("The limit is one for the whole look-up, and without any time nothing is asked") {
  std::atomic<bool> first = true;
  DatabaseServer server([&](Wire& wire, const std::string&) {
    if (first.exchange(false)) return wire.answer(Exact);
    wire.stayForEver();
  });
  World world(&server);
  world.keep(Entry);
  CHECK(world.lookUp(1) == std::string("failed ") + EntryText);
  CHECK(server.requests().size() == 2);
  world.keep(Entry);
  CHECK(world.lookUp(0).starts_with("failed "));
  CHECK(world.lookUp(-1).starts_with("failed "));
  CHECK(server.requests().size() == 2);
}

TEST_CASE("A host name that nobody resolves costs the limit and no more") {
  World world;
  world.settings.host = hangingName;
  world.disc->text = names;
  CHECK(world.lookUp(1) == std::string("failed ") + NamesText);
  // The thread that still waits there is in nobody's way.
  DatabaseServer server(answering(Exact, Entry));
  world.settings = {"127.0.0.1", server.port(), "joe@example.org"};
  CHECK(world.lookUp() == EntryText);
}

TEST_CASE("A drive that does not answer costs the limit and no more") {
  World world;
  const auto answers = std::make_shared<std::atomic<bool>>(false);
  const ContentsOf hanging = [answers](const std::string&) -> std::optional<DiscContents> {
    while (!*answers) std::this_thread::yield();
    return std::nullopt;
  };
  WebDatabases databases(world.settings, HostPath(world.folder.path()), hanging, world.patience);
  CHECK(World::lookUp(*databases.create(), 1) == "failed ");
  *answers = true;
}

TEST_CASE("The window's thread waits with patience for disc and server, and may let the database go behind a failure") {
  World world;
  std::atomic<bool> discAnswers = false;
  std::atomic<bool> serverAnswers = false;
  DatabaseServer server([&](Wire& wire, const std::string& target) {
    while (!serverAnswers) std::this_thread::yield();
    answering(Exact, Entry)(wire, target);
  });
  world.settings.port = server.port();
  int looks = 0;
  world.patience.meanwhile = [&] {
    if (++looks == 3) discAnswers = true;
    if (looks == 9) serverAnswers = true;
  };
  const ContentsOf slow = [&](const std::string&) {
    while (!discAnswers) std::this_thread::yield();
    return world.disc;
  };
  WebDatabases databases(world.settings, HostPath(world.folder.path()), slow, world.patience);
  CHECK(World::lookUp(*databases.create()) == EntryText);
  CHECK(world.patience.waits == 2);
  CHECK(looks >= 9);
}

TEST_CASE("What keeps a reply from being kept does not keep its names from the user") {
  DatabaseServer server(answering(Exact, Entry));
  World world(&server);
  world.folder.write("Disc Names", "a file in the way");
  CHECK(world.lookUp() == EntryText);
  CHECK(world.folder.read("Disc Names") == "a file in the way");
}

TEST_CASE("What lies among the kept replies and is none is passed over") {
  World world;
  world.settings.email.clear();
  std::filesystem::create_directories(world.folder / "Disc Names/940aac0d");
  CHECK(world.lookUp().empty());
  std::filesystem::remove(world.folder / "Disc Names/940aac0d");
  REQUIRE(::mkfifo((world.folder / "Disc Names/940aac0d").c_str(), 0600) == 0);
  CHECK(world.lookUp().empty());
  std::filesystem::remove(world.folder / "Disc Names/940aac0d");
  for (const std::string& bytes : {std::string(), std::string("\0\xFF", 2), std::string(10000000, 'x')}) {
    world.keep(bytes);
    CHECK(world.lookUp().empty());
  }
}

}  // namespace trackloom::engines::discdb
