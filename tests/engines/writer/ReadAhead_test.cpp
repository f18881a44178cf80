#include "engines/writer/ReadAhead.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <catch2/catch.hpp>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "engines/ground/Blocks.h"
#include "engines/ground/EngineError.h"

namespace trackloom::engines::writer {

namespace {

using namespace std::chrono_literals;

constexpr std::int32_t manyBlocks = 40000;

/// What a test lets happen to one track, and sees of it.
struct Script {
  std::int32_t blocks = manyBlocks;
  char sound = 'x';
  std::promise<void> open = {};
  std::shared_future<void> opened = open.get_future().share();
  /// Blocks at which it fails, and at which it has nothing more.
  std::int32_t failAt = std::numeric_limits<std::int32_t>::max();
  std::int32_t endAt = std::numeric_limits<std::int32_t>::max();
  std::atomic<int> reads = 0;
  std::atomic<std::size_t> bytes = 0;
  std::atomic<pid_t> decoder = 0;
  /// The last read returned, and nothing since can have made the decoder wait but the buffer.
  std::atomic<bool> returned = false;
};

class ScriptedStream final : public audio::AudioStream {
 public:
  explicit ScriptedStream(std::shared_ptr<Script> script) : held_(std::move(script)), script_(*held_) {}

  std::int32_t blocks() const override { return script_.blocks; }
  std::size_t read(std::span<std::byte> sectors) override {
    script_.returned = false;
    script_.decoder = ::gettid();
    script_.opened.wait();
    if (script_.bytes / audioSectorBytes >= static_cast<std::size_t>(script_.failAt))
      throw EngineError(ErrorKind::File, 0, "scripted");
    if (script_.bytes / audioSectorBytes >= static_cast<std::size_t>(script_.endAt)) return 0;
    std::ranges::fill(sectors, static_cast<std::byte>(script_.sound));
    script_.bytes += sectors.size();
    ++script_.reads;
    script_.returned = true;
    return sectors.size();
  }

 private:
  std::shared_ptr<Script> held_;
  Script& script_;
};

/// Waits as long as it takes; ctest ends a test that never gets there.
template <class Condition>
void await(const Condition& condition) {
  while (!condition()) std::this_thread::sleep_for(1ms);
}

bool isAsleep(pid_t thread) {
  std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/stat");
  const std::string text{std::istreambuf_iterator<char>(status), {}};
  return text.substr(text.rfind(')') + 2, 1) == "S";
}

/// The decoder of a track has a chunk in its hands for which there is no room. Only certain while no other thread of
/// the reader ahead is awake.
void awaitWaitForRoom(const Script& script) {
  await([&] { return script.returned && isAsleep(script.decoder); });
}

void letOpen(Script& script) {
  if (script.opened.wait_for(0s) != std::future_status::ready) script.open.set_value();
}

/// A reader ahead of scripted tracks, whose sectors hold 'a', 'b' and so on.
class Scripted {
 public:
  explicit Scripted(std::size_t tracks) {
    for (std::size_t track = 0; track < tracks; ++track) {
      scripts_.push_back(std::make_shared<Script>());
      scripts_.back()->sound = static_cast<char>('a' + track);
    }
  }
  ~Scripted() {
    for (const auto& script : scripts_) letOpen(*script);
  }
  Scripted(const Scripted&) = delete;
  Scripted& operator=(const Scripted&) = delete;

  Script& operator[](std::size_t track) { return *scripts_[track]; }

  std::unique_ptr<ReadAhead> start() {
    std::vector<ReadAhead::Track> tracks;
    for (const auto& script : scripts_) tracks.push_back({fileOf(*script), script->blocks});
    return std::make_unique<ReadAhead>(
        tracks, [scripts = scripts_](std::size_t track) { return std::make_unique<ScriptedStream>(scripts[track]); },
        inUse, stop.get_token());
  }
  static HostPath fileOf(const Script& script) { return HostPath(std::string(1, script.sound)); }
  bool isInUse(std::size_t track) {
    return inUse->awaitFree(std::array{fileOf(*scripts_[track])}, 0ms, {}).has_value();
  }

  std::stop_source stop;
  std::shared_ptr<SourcesInUse> inUse = std::make_shared<SourcesInUse>();

 private:
  std::vector<std::shared_ptr<Script>> scripts_;
};

char nextSector(ReadAhead& ahead) {
  std::vector<std::byte> sector(audioSectorBytes);
  ahead.read(sector);
  return static_cast<char>(sector.back());
}

/// Sectors that are decoded at once.
constexpr int chunk = 256;

constexpr std::size_t shareOfLaterTracks = DecodedTracks::capacity - DecodedTracks::currentTrackShare;

}  // namespace

TEST_CASE("A track that waits for room goes on when its turn comes") {
  Scripted tracks(3);
  tracks[0].blocks = 1;
  letOpen(tracks[0]);
  letOpen(tracks[2]);
  const auto ahead = tracks.start();
  CHECK(nextSector(*ahead) == 'a');
  await([&] { return tracks[2].bytes > shareOfLaterTracks; });
  awaitWaitForRoom(tracks[2]);
  // The second track has nothing in the buffer yet, and now finds it filled by the third.
  letOpen(tracks[1]);
  awaitWaitForRoom(tracks[1]);

  auto sector = std::async(std::launch::async, [&] { return nextSector(*ahead); });
  const bool came = sector.wait_for(20s) == std::future_status::ready;
  tracks.stop.request_stop();
  REQUIRE(came);
  CHECK(sector.get() == 'b');
}

TEST_CASE("Later tracks leave a share of the buffer to the one being read, which may have all of it") {
  Scripted tracks(2);
  letOpen(tracks[1]);
  const auto ahead = tracks.start();
  await([&] { return tracks[1].bytes > shareOfLaterTracks; });
  awaitWaitForRoom(tracks[1]);
  CHECK(tracks[1].bytes < DecodedTracks::capacity);

  letOpen(tracks[0]);
  await([&] { return tracks[0].bytes >= DecodedTracks::currentTrackShare; });
  awaitWaitForRoom(tracks[0]);
  // Both have one chunk in hand beyond what the buffer holds.
  CHECK(tracks[0].bytes + tracks[1].bytes <= DecodedTracks::capacity + 3 * chunk * audioSectorBytes);
  CHECK(ahead->bufferPercent() == 100);
}

TEST_CASE("A reader ahead lets go of a source that does not answer") {
  Scripted tracks(1);
  auto ahead = tracks.start();
  await([&] { return tracks[0].decoder != 0; });
  auto sector = std::async(std::launch::async, [&] { nextSector(*ahead); });
  tracks.stop.request_stop();
  CHECK_THROWS_AS(sector.get(), Stopped);
  ahead.reset();
  CHECK(tracks[0].reads == 0);
  CHECK(tracks.isInUse(0));
  letOpen(tracks[0]);
  await([&] { return !tracks.isInUse(0); });
}

TEST_CASE("A file is in use from before it is opened until its decoder has done with it") {
  Scripted tracks(3);
  tracks[0].blocks = 1;
  tracks[1].blocks = 1;
  const auto ahead = tracks.start();
  await([&] { return tracks.isInUse(0) && tracks.isInUse(1); });
  CHECK_FALSE(tracks.isInUse(2));
  letOpen(tracks[0]);
  await([&] { return tracks.isInUse(2); });
  CHECK_FALSE(tracks.isInUse(0));
  CHECK(tracks.isInUse(1));
}

TEST_CASE("A decoder that was let go reads no further") {
  Scripted tracks(1);
  auto ahead = tracks.start();
  await([&] { return tracks[0].decoder != 0; });
  const pid_t decoder = tracks[0].decoder;
  ahead.reset();
  letOpen(tracks[0]);
  await([&] { return !std::filesystem::exists("/proc/self/task/" + std::to_string(decoder)); });
  CHECK(tracks[0].reads == 1);
}

TEST_CASE("A track that fails does so where its sound ends, and the tracks before it are whole") {
  Scripted tracks(2);
  tracks[0].blocks = 100;
  tracks[1].failAt = chunk;
  letOpen(tracks[0]);
  letOpen(tracks[1]);
  const auto ahead = tracks.start();
  await([&] { return tracks[1].reads == 1; });
  std::vector<std::byte> sectors(audioSectorBytes * (100 + chunk));
  ahead->read(sectors);
  CHECK(static_cast<char>(sectors[audioSectorBytes * 100 - 1]) == 'a');
  CHECK(static_cast<char>(sectors[audioSectorBytes * 100]) == 'b');
  CHECK_THROWS_WITH(nextSector(*ahead), "scripted");
}

TEST_CASE("A track whose sound ends early is a file error, never silence") {
  Scripted tracks(1);
  tracks[0].endAt = 1;
  letOpen(tracks[0]);
  const auto ahead = tracks.start();
  std::vector<std::byte> sectors(audioSectorBytes * static_cast<std::size_t>(manyBlocks));
  try {
    ahead->read(sectors);
    FAIL("nothing was told");
  } catch (const EngineError& error) {
    CHECK(error.kind() == ErrorKind::File);
    CHECK(error.number() == 0);
    CHECK(error.words() == "a track ends before its last block");
  }
}

}  // namespace trackloom::engines::writer
