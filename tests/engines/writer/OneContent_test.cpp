#include <sys/stat.h>

#include <catch2/catch.hpp>
#include <fstream>
#include <functional>

#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

namespace {

/// More than the reader ahead holds, so that the file is still being read while its first sectors are written.
constexpr std::int32_t manyBlocks = 20'000;

HostPath longWav(const FakeWorld& world) {
  const HostPath path =
      world.folder.file("long.wav", wav("").substr(0, 40) + fakes::littleEndian(manyBlocks * 2352, 4));
  std::filesystem::resize_file(path.text, std::uintmax_t{44} + manyBlocks * std::uintmax_t{2352});
  return path;
}

/// The same few frames over and over.
HostPath longMp3(const FakeWorld& world) {
  const std::string sound = world.folder.file("sound.wav", wav(noise(std::size_t{200} * 2352, 1))).text;
  REQUIRE(std::system(("lame --quiet -t -b 128 '" + sound + "' '" + sound + ".mp3'").c_str()) == 0);
  const std::string frames = contentOf(sound + ".mp3");
  std::string bytes;
  for (int time = 0; time < 100; ++time) bytes += frames;
  return world.folder.file("long.mp3", bytes);
}

/// What the write comes to when this happens to its source at its first sectors.
std::string endOf(FakeWorld& world, const std::function<void()>& change) {
  world.recorder->everyWrite = std::chrono::milliseconds(1);
  world.heard.onLine = [&](const std::string& line) {
    if (line.starts_with("OnTrackWriteStart")) change();
  };
  world.write();
  return world.heard.lines.back();
}

void overwrite(const HostPath& path, std::size_t at, const std::string& bytes) {
  std::fstream file(path.text, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(static_cast<std::streamoff>(at));
  file << bytes;
}

/// Overwrites a file without a trace in its size or its time of change.
void overwriteSecretly(const HostPath& path, std::size_t at, const std::string& bytes) {
  const auto time = std::filesystem::last_write_time(path.text);
  overwrite(path, at, bytes);
  std::filesystem::last_write_time(path.text, time);
}

}  // namespace

TEST_CASE("A source that is changed while it is recorded spoils the disc and is named") {
  FakeWorld world;
  const bool mp3 = GENERATE(false, true);
  const HostPath path = mp3 ? longMp3(world) : longWav(world);
  REQUIRE(world.writer->AddAudioTrack(path, 1));
  std::string end;
  SECTION("overwritten at its start") {
    end = endOf(world, [&] { overwrite(path, 1000, "other"); });
  }
  SECTION("overwritten at its start, and the time put back") {
    end = endOf(world, [&] { overwriteSecretly(path, 1000, "other"); });
  }
  SECTION("cut short") {
    end = endOf(world,
                [&] { std::filesystem::resize_file(path.text, std::filesystem::file_size(path.text) - 1'000'000); });
  }
  SECTION("emptied") {
    end = endOf(world, [&] { std::filesystem::resize_file(path.text, 0); });
  }
  CHECK(end == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure() == path.text + ": changed while it was being recorded");
  CHECK(world.recorder->disc()->state.status == DiscClosed);
}

TEST_CASE("A source whose name goes while it is recorded is recorded to its end") {
  FakeWorld world;
  const HostPath path = GENERATE(false, true) ? longMp3(world) : longWav(world);
  REQUIRE(world.writer->AddAudioTrack(path, 1));
  CHECK(endOf(world, [&] { std::filesystem::remove(path.text); }) == "OnOperationComplete");
}

TEST_CASE("A data file that is changed while it is recorded spoils the disc and is named") {
  FakeWorld world;
  world.writer->SetDiscMode(DataBlocks);
  const HostPath path = world.folder.file("data", std::string(std::size_t{40} << 20, 'x'));
  REQUIRE(world.writer->AddDataFile(DiscPath("\\data"), path));
  std::string end;
  SECTION("overwritten") {
    end = endOf(world, [&] { overwrite(path, 0, "other"); });
  }
  SECTION("overwritten, and the time put back") {
    end = endOf(world, [&] { overwriteSecretly(path, 0, "other"); });
  }
  CHECK(end == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure() == path.text + ": changed while it was being recorded");
  CHECK(world.recorder->disc()->state.status == DiscClosed);
}

TEST_CASE("A second copy is held to the content of the first") {
  FakeWorld world;
  const bool data = GENERATE(false, true);
  world.writer->SetDiscMode(data ? DataBlocks : AudioBlocks);
  const HostPath path = world.track("a", 300);
  world.writer->AddAudioTrack(path, 1);
  world.writer->AddDataFile(DiscPath("\\a"), path);
  REQUIRE(world.write());
  REQUIRE(world.heard.lines.back() == "OnOperationComplete");
  world.recorder->insert(FakeDisc::blank());
  SECTION("other rights do no harm") {
    REQUIRE(::chmod(path.text.c_str(), 0640) == 0);
    world.write();
    CHECK(world.heard.lines.back() == "OnOperationComplete");
  }
  SECTION("other bytes do, though size and time are the same") {
    overwriteSecretly(path, 70'000, "other");
    world.write();
    CHECK(world.heard.lines.back() == "OnWriteError 2 0");
    CHECK(world.writers.failureDetail().lastFailure() == path.text + ": changed while it was being recorded");
  }
  SECTION("other bytes are what is wanted once they were queued anew") {
    overwrite(path, 70'000, "other");
    world.writer->ClearAudioQueue();
    world.writer->AddAudioTrack(path, 1);
    world.writer->AddDataFile(DiscPath("\\a"), path);
    world.write();
    CHECK(world.heard.lines.back() == "OnOperationComplete");
  }
}

TEST_CASE("A header that lies about the length of its file does not reach the disc, and the queue learns the truth") {
  FakeWorld world;
  const std::string sound = world.folder.file("sound.wav", wav(noise(std::size_t{200} * 2352, 1))).text;
  REQUIRE(std::system(("lame --quiet -b 128 '" + sound + "' '" + sound + ".mp3'").c_str()) == 0);
  std::string bytes = contentOf(sound + ".mp3");
  const std::size_t frames = bytes.find("Info") + 11;
  bytes[frames] = static_cast<char>(static_cast<unsigned char>(bytes[frames]) - 5);
  const HostPath path = world.folder.file("lie.mp3", bytes);
  REQUIRE(world.writer->AddAudioTrack(path, 1));
  CHECK(world.writer->AudioQueueBlocks() == 191);
  REQUIRE(world.write());
  CHECK(world.heard.lines.back() == "OnOperationComplete");
  CHECK(world.recorder->disc()->tracks.at(0).size() == std::size_t{200} * 2352);
  world.writer->ClearAudioQueue();
  world.writer->AddAudioTrack(path, 1);
  CHECK(world.writer->AudioQueueBlocks() == 200);
}

TEST_CASE("A changed source among many costs no disc, whichever it is") {
  FakeWorld world;
  const bool data = GENERATE(false, true);
  world.writer->SetDiscMode(data ? DataBlocks : AudioBlocks);
  for (const char* name : {"a", "b", "c"}) {
    world.writer->AddAudioTrack(world.track(name, 10), static_cast<std::int16_t>(*name));
    world.writer->AddDataFile(DiscPath(std::string("\\") + name), world.folder.host(std::string(name) + ".wav"));
  }
  const HostPath path = world.folder.host(GENERATE("a.wav", "b.wav", "c.wav"));
  SECTION("overwritten") {
    overwrite(path, 100, "other");
    std::filesystem::last_write_time(path.text, std::filesystem::file_time_type{});
    world.write();
    CHECK(world.writers.failureDetail().lastFailure() == path.text + ": changed since it was added");
  }
  SECTION("not to be opened") {
    std::filesystem::remove(path.text);
    std::filesystem::create_symlink(path.text, path.text);
    world.write();
    CHECK(world.writers.failureDetail().lastFailure() == path.text + ": Too many levels of symbolic links");
  }
  CHECK(world.heard.lines.back() == "OnWriteError 2 0");
  CHECK(world.recorder->orders.empty());
  CHECK(world.recorder->disc()->state.status == DiscEmpty);
}

}  // namespace trackloom::engines::writer
