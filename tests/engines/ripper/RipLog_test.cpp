#include "engines/ripper/RipLog.h"

#include <sstream>

#include "engines/ripper/OffsetReading.h"
#include "engines/ripper/RipWorld.h"
#include "fakes/TestFiles.h"

namespace trackloom::engines::ripper {

namespace {

void rip(RipWorld& world, const std::vector<contract::DiscPart>& tracks) {
  world.insert(tracks);
  REQUIRE(world.ripper().SelectRipDrive(0));
  REQUIRE(world.ripper().ReadTOC());
  world.ripper().ClearQueue();
  for (std::int16_t track = 1; track <= static_cast<std::int16_t>(tracks.size()); ++track)
    if (tracks[static_cast<std::size_t>(track) - 1].audio)
      world.ripper().QueueTrack(track, world.out(std::to_string(track) + ".wav"), track);
  world.heard().lines.clear();
  REQUIRE(world.ripper().StartRip());
  REQUIRE(world.runUntil([&] { return world.heard().ended(); }));
}

/// The values behind "name: " in the report, in their order.
std::vector<std::string> valuesOf(const std::string& report, const std::string& name) {
  std::vector<std::string> values;
  std::istringstream lines(report);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t at = line.find(name + ": ");
    if (at != std::string::npos) values.push_back(line.substr(at + name.size() + 2));
  }
  return values;
}

/// "crc v1 v2" of the published algorithm, by a program of its own.
std::string publishedSums(const fakes::TempFolder& folder, const std::string& sound, bool first, bool last) {
  const HostPath file = folder.file("sound.raw", sound);
  std::string sums = fakes::outputOf("python3 " TRACKLOOM_SOURCE_DIR "/tests/engines/ripper/accuraterip.py " +
                                     file.text + (first ? " first" : " middle") + (last ? " last" : " middle"));
  REQUIRE(sums.size() == 27);
  sums.pop_back();
  return sums;
}

std::string reportedSums(const std::string& report, std::size_t track) {
  return valuesOf(report, "CRC-32").at(track) + " " + valuesOf(report, "AccurateRip v1").at(track) + " " +
         valuesOf(report, "AccurateRip v2").at(track);
}

constexpr const char* logging = "[Ripping]\nripLog = on\n";

/// A drive that gives everything so many samples too early, behind its last sector nothing.
class EarlyDrive final : public DiscReading {
 public:
  EarlyDrive(std::string disc, int samples) : disc_(std::move(disc)), samples_(samples) {}

  std::vector<std::byte> read(std::int32_t sector, std::int32_t count, const TroubleWatch&,
                              const std::stop_token&) override {
    REQUIRE(sector >= 0);
    REQUIRE(static_cast<std::size_t>(sector + count) * 2352 <= disc_.size());
    std::vector<std::byte> sound;
    for (std::int64_t at = std::int64_t{sector} * 2352; at < std::int64_t{sector + count} * 2352; ++at) {
      const std::int64_t from = at - samples_ * 4;
      const bool there = from >= 0 && from < std::ssize(disc_);
      sound.push_back(static_cast<std::byte>(there ? disc_[static_cast<std::size_t>(from)] : '\0'));
    }
    return sound;
  }

 private:
  std::string disc_;
  int samples_;
};

}  // namespace

TEST_CASE("Without being asked for no report is left") {
  RipWorld world;
  rip(world, {{true, 0, 20}});
  CHECK(world.made() == std::vector<std::string>{"1.wav"});
}

TEST_CASE("The report's sums are those of the published algorithms") {
  RipWorld world(logging);
  rip(world, {{true, 0, 20}, {true, 20, 150}, {true, 170, 13}});
  const std::string report = world.folder.read("out/Rip.log");
  CHECK(reportedSums(report, 0) == publishedSums(world.folder, world.soundOf(0, 20), true, false));
  CHECK(reportedSums(report, 1) == publishedSums(world.folder, world.soundOf(20, 150), false, false));
  CHECK(reportedSums(report, 2) == publishedSums(world.folder, world.soundOf(170, 13), false, true));
}

TEST_CASE("A disc's only track lacks both ends in its AccurateRip sums, behind data too") {
  RipWorld world(logging);
  rip(world, {{false, 0, 60}, {true, 210, 30}});
  CHECK(reportedSums(world.folder.read("out/Rip.log"), 0) ==
        publishedSums(world.folder, world.soundOf(210, 30), true, true));
}

TEST_CASE("A track shorter than what is left out has sums of nothing") {
  RipWorld world(logging);
  rip(world, {{true, 0, 3}});
  CHECK(valuesOf(world.folder.read("out/Rip.log"), "AccurateRip v1").at(0) == "00000000");
}

TEST_CASE("The report tells drive, offset, trouble, format and what stands before track 1") {
  RipWorld world("[Ripping]\nripLog = on\n[readOffset]\nvirtual cd recorder = +6\n");
  world.configure("[faults]\nretryReadAt = 33\njitterAt = 70\n");
  rip(world, {{true, 32, 30}, {true, 62, 20}});
  const std::string report = world.folder.read("out/Rip.log");
  CHECK(valuesOf(report, "Drive") == std::vector<std::string>{"Virtual CD Recorder"});
  CHECK(valuesOf(report, "Read offset") == std::vector<std::string>{"+6 samples"});
  CHECK(valuesOf(report, "Speed") == std::vector<std::string>{"automatic"});
  CHECK(valuesOf(report, "Format") == std::vector<std::string>{"WAV, 16 bits, 44100 Hz, stereo"});
  CHECK(valuesOf(report, "Sound before track 1") == std::vector<std::string>{"32 sectors (00:00:32)"});
  CHECK(valuesOf(report, "  Read trouble") == std::vector<std::string>{"read again x 1", "jitter not corrected x 1"});
  CHECK(valuesOf(report, "  Pre-emphasis") == std::vector<std::string>{"no", "no"});
  CHECK(valuesOf(report, "  Result") == std::vector<std::string>{"whole", "whole"});
  CHECK(valuesOf(report, "  File") == std::vector<std::string>{world.out("1.wav").text, world.out("2.wav").text});
}

TEST_CASE("A second report stands behind the first, and tells of tracks that failed without sums") {
  RipWorld world(logging);
  rip(world, {{true, 0, 20}});
  const std::string first = world.folder.read("out/Rip.log");
  world.spoil(3);
  rip(world, {{true, 0, 20}, {true, 20, 20}});
  const std::string both = world.folder.read("out/Rip.log");
  CHECK(both.starts_with(first));
  CHECK(valuesOf(both, "  Result") == std::vector<std::string>{"whole", "aborted", "whole"});
  CHECK(valuesOf(both, "CRC-32").size() == 2);
}

TEST_CASE("What is too long for a report under its name is none of ours and stays as it is") {
  constexpr std::uintmax_t Longest = std::uintmax_t{16} << 20;
  RipWorld world(logging);
  rip(world, {{true, 0, 20}});
  const std::filesystem::path log = world.folder / "out/Rip.log";
  std::filesystem::resize_file(log, Longest - 1);
  rip(world, {{true, 0, 20}});
  CHECK(std::filesystem::file_size(log) == Longest - 1);
  // A report and the empty line before it still fit behind one that is shorter.
  std::filesystem::resize_file(log, Longest - 2);
  rip(world, {{true, 0, 20}});
  CHECK(std::filesystem::file_size(log) > Longest);
}

TEST_CASE("The report of MP3 files tells the encoder, its rate and the sums of the disc's sound") {
  RipWorld world(logging);
  world.ripper().AttachEncoder(world.encoder());
  world.ripper().SetUseEncoder(true);
  world.lame->SetBitRate(192);
  rip(world, {{true, 0, 60}});
  const std::string report = world.folder.read("out/Rip.log");
  CHECK(valuesOf(report, "Format").at(0).starts_with("MP3, 192 kbps constant, 44100 Hz, stereo, LAME 3."));
  CHECK(reportedSums(report, 0) == publishedSums(world.folder, world.soundOf(0, 60), true, true));
}

TEST_CASE("Pre-emphasis stands in the report") {
  RipRequest request;
  RippedTrack track{{1, HostPath("/a.wav"), 1, {AudioBlocks, 0, 10, 1, true}, {}},
                    HostPath("/a.wav"),
                    status::whole,
                    Checksums({}, 10),
                    {}};
  CHECK(valuesOf(ripReport(request, {}, {track}), "  Pre-emphasis") == std::vector<std::string>{"yes"});
}

TEST_CASE("A read offset puts the sound at its place, with silence beyond the ends") {
  const std::string disc = fakes::noise(100 * 2352, 3);
  const DiscContents contents{{{AudioBlocks, 0, 60}, {AudioBlocks, 60, 40}}, 100};
  for (const int samples : {6, -6, 588, -588, 1000, -1764, 11760}) {
    CAPTURE(samples);
    OffsetReading reading(std::make_shared<EarlyDrive>(disc, samples), contents, samples);
    std::string read;
    for (int sector = 0; sector < 100; sector += 20) {
      const auto piece = reading.read(sector, 20, [](ReadTrouble, std::int32_t) {}, {});
      read.append(reinterpret_cast<const char*>(piece.data()), piece.size());
    }
    const std::size_t lost = static_cast<std::size_t>(std::abs(samples)) * 4;
    const std::size_t kept = disc.size() - lost;
    REQUIRE(read.size() == disc.size());
    if (samples > 0)
      CHECK(read == disc.substr(0, kept) + std::string(lost, '\0'));
    else
      CHECK(read == std::string(lost, '\0') + disc.substr(lost));
  }
}

TEST_CASE("A read offset never leads into a data track") {
  const std::string disc = fakes::noise(100 * 2352, 3);
  const DiscContents contents{{{DataBlocks, 0, 40}, {AudioBlocks, 40, 20}, {AudioBlocks, 60, 20, 2}}, 80};
  OffsetReading reading(std::make_shared<EarlyDrive>(disc, 0), contents, 588);
  const auto ends = [&](std::int32_t sector, std::int32_t count) {
    const auto piece = reading.read(sector, count, [](ReadTrouble, std::int32_t) {}, {});
    return std::string(reinterpret_cast<const char*>(piece.data()), piece.size());
  };
  CHECK(ends(40, 20) == disc.substr(41 * 2352, 19 * 2352) + std::string(2352, '\0'));
  CHECK(ends(60, 20) == disc.substr(61 * 2352, 19 * 2352) + std::string(2352, '\0'));
}

}  // namespace trackloom::engines::ripper
