#include "desktop/FolderLister.h"

#include <pthread.h>

#include <algorithm>
#include <catch2/catch.hpp>
#include <chrono>
#include <cstddef>
#include <system_error>
#include <thread>
#include <utility>

#include "fakes/FakeEventQueue.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"

namespace trackloom {

namespace {

using Lines = std::vector<std::string>;

/// Writes down what it hears.
class Notebook final : public FolderReader {
 public:
  Lines heard;
  bool ended = false;

  void fileFound(const std::string& name) override { heard.push_back(name); }
  void lengthFound(std::int64_t bytes) override { heard.push_back(std::to_string(bytes)); }
  void allFound() override { end("all"); }
  void listingFailed() override { end("failed"); }

 private:
  void end(const std::string& word) {
    heard.push_back(word);
    ended = true;
  }
};

/// While this lives the system has no room for one more thread of this process.
class NoMoreThreads {
 public:
  NoMoreThreads() {
    REQUIRE(pthread_getattr_default_np(&before_) == 0);
    pthread_attr_t large = before_;
    REQUIRE(pthread_attr_setstacksize(&large, std::size_t{1} << 46) == 0);
    REQUIRE(pthread_setattr_default_np(&large) == 0);
  }
  ~NoMoreThreads() { pthread_setattr_default_np(&before_); }
  NoMoreThreads(const NoMoreThreads&) = delete;
  NoMoreThreads& operator=(const NoMoreThreads&) = delete;

 private:
  pthread_attr_t before_{};
};

/// A lister, and the thread on which it is heard.
struct Listening {
  fakes::TempFolder folder;
  fakes::FakeEventQueue events;
  fakes::FakePatience patience;
  FolderLister lister{events, patience};
  Notebook notes;

  FolderListing::Hold list(const std::string& place) {
    return lister.list(HostPath(place + "/"), {".mp3", ".wav"}, notes);
  }
  bool hearsTheEnd() {
    return events.runUntil([this] { return notes.ended; });
  }
};

}  // namespace

TEST_CASE("A folder's files are told with their lengths, extension by extension, and nothing within the call") {
  Listening to;
  for (const char* name : {"b.mp3", "A.MP3", "a.wav", "notes.txt"}) to.folder.write(name, name);
  const auto hold = to.list(to.folder.path());
  CHECK(to.notes.heard.empty());
  REQUIRE(to.hearsTheEnd());
  CHECK(to.notes.heard == Lines{"A.MP3", "5", "b.mp3", "5", "a.wav", "5", "all"});
}

TEST_CASE("A folder that is not there fails") {
  Listening to;
  const auto hold = to.list(to.folder / "missing");
  REQUIRE(to.hearsTheEnd());
  CHECK(to.notes.heard == Lines{"failed"});
}

TEST_CASE("Nothing is heard of a listing that was dropped, also where its words wait already") {
  Listening to;
  to.folder.write("a.mp3", "x");
  auto dropped = to.list(to.folder.path());
  to.events.waitForPost();
  dropped.reset();
  to.folder.write("b/c.wav", "xy");
  const auto hold = to.list(to.folder / "b");
  REQUIRE(to.hearsTheEnd());
  CHECK(to.notes.heard == Lines{"c.wav", "2", "all"});
}

TEST_CASE("What was dropped says nothing more to the queue, which may be gone by then") {
  Listening to;
  for (int look = 0; look < 50; ++look) to.lister.find(HostPath(to.folder.path()), [] {}).reset();
  const std::size_t atTheDrop = to.events.size();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  CHECK(to.events.size() == atTheDrop);
}

TEST_CASE("A listing that is dropped by one of its own words says no other") {
  struct Leaver final : FolderReader {
    FolderListing::Hold hold;
    int heard = 0;
    void leave() {
      ++heard;
      hold.reset();
    }
    void fileFound(const std::string& /*name*/) override { leave(); }
    void lengthFound(std::int64_t /*bytes*/) override { leave(); }
    void allFound() override { leave(); }
    void listingFailed() override { leave(); }
  };
  Listening to;
  for (const char* name : {"a.mp3", "b.mp3"}) to.folder.write(name, name);
  Leaver leaver;
  leaver.hold = to.lister.list(HostPath(to.folder.path() + "/"), {".mp3"}, leaver);
  to.events.waitForPost();
  to.events.runPosted();
  CHECK(leaver.heard == 1);
}

TEST_CASE("Words come in their order, also where one of them lets other events run") {
  struct Nester final : FolderReader {
    std::function<void()> runOthers;
    Lines heard;
    bool ended = false;
    void fileFound(const std::string& name) override {
      runOthers();
      heard.push_back(name);
    }
    void lengthFound(std::int64_t /*bytes*/) override {}
    void allFound() override { ended = true; }
    void listingFailed() override {}
  };
  Listening to;
  for (int number = 10; number < 99; ++number) to.folder.write(std::to_string(number) + ".mp3", "");
  Nester nester;
  bool nested = false;
  nester.runOthers = [&] {
    if (std::exchange(nested, true)) return;
    nester.heard.push_back("first");
    to.events.runUntil([&] { return nester.ended; });
  };
  const auto hold = to.lister.list(HostPath(to.folder.path() + "/"), {".mp3"}, nester);
  to.events.waitForPost();
  // Most likely all words lie ready then, and one event is to tell them all.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  REQUIRE(to.events.runUntil([&] { return nester.ended; }));
  REQUIRE(nester.heard.size() == 90);
  CHECK(nester.heard[0] == "first");
  CHECK(std::is_sorted(nester.heard.begin() + 1, nester.heard.end() - 1));
  CHECK(nester.heard.back() == "10.mp3");
}

TEST_CASE("A folder is found, and what is none is not, nor one that was dropped") {
  Listening to;
  to.folder.write("file", "x");
  Lines found;
  const auto seek = [&](const std::string& place) {
    return to.lister.find(HostPath(place), [&found, place] { found.push_back(place); });
  };
  const auto none = seek(to.folder / "file");
  auto dropped = seek(to.folder.path());
  to.events.waitForPost();
  dropped.reset();
  const auto hold = seek("/");
  REQUIRE(to.events.runUntil([&] { return !found.empty(); }));
  CHECK(found == Lines{"/"});
}

TEST_CASE("Whether a file is there is waited for with patience, and a folder of its name is none") {
  Listening to;
  to.folder.write("music/a.mp3", "");
  CHECK(to.lister.hasFile(to.folder.host("music/a.mp3")));
  CHECK_FALSE(to.lister.hasFile(to.folder.host("music")));
  CHECK_FALSE(to.lister.hasFile(to.folder.host("music/b.mp3")));
  CHECK(to.patience.waits == 3);
}

TEST_CASE("Where the system has no thread to spare, all is looked at on the asker's own, and heard as ever") {
  Listening to;
  to.folder.write("a.mp3", "xyz");
  const NoMoreThreads full;
  REQUIRE_THROWS_AS(std::thread([] {}).join(), std::system_error);
  CHECK(to.lister.hasFile(to.folder.host("a.mp3")));
  CHECK_FALSE(to.lister.hasFile(to.folder.host("b.mp3")));
  CHECK(to.lister.endOf(to.folder.host("a.mp3"), 2) == "yz");
  bool found = false;
  const auto finding = to.lister.find(HostPath(to.folder.path()), [&] { found = true; });
  const auto hold = to.list(to.folder.path());
  CHECK(to.notes.heard.empty());
  REQUIRE(to.hearsTheEnd());
  CHECK(to.notes.heard == Lines{"a.mp3", "3", "all"});
  CHECK(found);
}

}  // namespace trackloom
