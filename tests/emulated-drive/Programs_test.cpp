#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdio>
#include <thread>

#include "Host.h"

// The drive under programs that nobody here wrote.

namespace emulated {

using Catch::Matchers::Contains;
using trackloom::fakes::noise;
using trackloom::fakes::wav;

namespace {

/// A rack with files to record, on which programs are run.
class Bench : public Rack {
 public:
  Bench() {
    box.write("files/one", noise(90000, 1));
    box.write("one.wav", wav(audioOf(1, 310)));
    box.write("two.wav", wav(audioOf(2, 400)));
  }

  static std::string audioOf(std::size_t seed, std::size_t blocks) { return noise(blocks * 2352, seed); }

  /// What the program says, in the bench's folder.
  std::string run(const std::string& command) {
    const std::string line = "cd '" + box.path() + "' && " + environment() + command + " 2>&1 </dev/null";
    std::FILE* pipe = ::popen(line.c_str(), "r");
    std::string said;
    for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe)) said += static_cast<char>(byte);
    status = ::pclose(pipe);
    return said;
  }
  /// The same, and it succeeds.
  std::string use(const std::string& command) {
    const std::string said = run(command);
    INFO(command << "\n" << said << "\n" << commands());
    CHECK(status == 0);
    return said;
  }
  std::string environment() const {
    return "EMULATED_HASTE=50 EMULATED_DRIVES='" + box.path() + "' LD_PRELOAD='" EMULATED_DRIVE_LIBRARY "' ";
  }

  int status = 0;
};

/// Lines of the log that end in a failure, but for what hosts ask to find out what a drive can do.
std::string failures(const std::string& log) {
  std::string list;
  std::istringstream in(log);
  for (std::string line; std::getline(in, line);) {
    const bool asks = line.starts_with("MODE-") || line.starts_with("READ-TOC") || line.starts_with("UNKNOWN");
    if (!line.ends_with("-> 00/00/00") && !asks) list += line + "\n";
  }
  return list;
}

}  // namespace

TEST_CASE("cdrskin records a session with texts, which cd-info and cdparanoia read back") {
  Bench bench;
  bench.box.write("texts",
                  "Input Sheet Version = 0.7T\nAlbum Title = Songs\nArtist Name = Band\nTrack 01 Title = First\nTrack "
                  "02 Title = Second\n");
  bench.use("cdrskin dev=/dev/sr0 -sao input_sheet_v07t=texts -audio one.wav two.wav");
  CHECK(failures(bench.commands()) == "");
  CHECK(bench.disc().finalized);
  const std::string told = bench.use("cd-info --no-cddb /dev/sr0");
  CHECK_THAT(told, Contains("  1: 00:02:00  000000 audio"));
  CHECK_THAT(told, Contains("  2: 00:06:10  000310 audio"));
  CHECK_THAT(told, Contains("170: 00:11:35  000710 leadout"));
  CHECK_THAT(told, Contains("TITLE: Songs"));
  CHECK_THAT(told, Contains("TITLE: Second"));
  bench.use("cdparanoia -d /dev/sr0 -r 1- tracks");
  CHECK(bench.box.read("tracks") == Bench::audioOf(1, 310) + Bench::audioOf(2, 400));
}

TEST_CASE("cdrskin records tracks at once and leaves the disc open") {
  Bench bench;
  bench.use("cdrskin dev=/dev/sr0 -tao -multi -audio one.wav");
  CHECK(failures(bench.commands()) == "");
  CHECK_FALSE(bench.disc().finalized);
  CHECK(bench.disc().sessions.size() == 1);
  CHECK_THAT(bench.use("cdrskin dev=/dev/sr0 -msinfo"), Contains("0,11712"));
}

TEST_CASE("A test of cdrskin leaves the disc blank, at once and track by track") {
  Bench bench;
  bench.use("cdrskin dev=/dev/sr0 -dummy -sao -audio one.wav");
  CHECK(bench.disc().blank());
  bench.use("cdrskin dev=/dev/sr0 -dummy -tao -audio one.wav two.wav");
  CHECK(bench.disc().blank());
  CHECK(failures(bench.commands()) == "");
}

TEST_CASE("cdrskin erases a rewritable disc, and its next session is whole") {
  Bench bench;
  bench.insert("CD-RW", 20000);
  bench.use("cdrskin dev=/dev/sr0 -sao -audio one.wav");
  bench.use("cdrskin dev=/dev/sr0 blank=fast");
  CHECK(bench.disc().blank());
  bench.use("cdrskin dev=/dev/sr0 -sao -audio two.wav");
  CHECK(bench.disc().tracks.at(0).end == 400);
  CHECK(failures(bench.commands()) == "");
}

TEST_CASE("xorriso adds session to session and reads all files back") {
  Bench bench;
  bench.use("xorriso -dev /dev/sr0 -joliet on -add files/one -- -commit");
  bench.box.write("files/two", noise(70000, 2));
  bench.use("xorriso -dev /dev/sr0 -joliet on -add files/two -- -commit");
  CHECK(bench.disc().sessions.size() == 2);
  CHECK(bench.disc().tracks.at(1).start == bench.disc().tracks.at(0).end + 11400);
  bench.use("xorriso -osirrox on -indev /dev/sr0 -extract /files back");
  CHECK(bench.box.read("back/one") == noise(90000, 1));
  CHECK(bench.box.read("back/two") == noise(70000, 2));
  CHECK_THAT(bench.use("cd-info --no-cddb /dev/sr0"), Contains("session #2 starts at track  2"));
}

TEST_CASE("wodim records tracks at once and a session at once, and tells what the disc is") {
  Bench bench;
  bench.insert("CD-RW", 20000);
  bench.use("wodim dev=/dev/sr0 gracetime=0 -tao -audio one.wav two.wav");
  CHECK(bench.disc().tracks.at(1).start == 462);
  CHECK_THAT(bench.use("wodim dev=/dev/sr0 -toc"), Contains("track:   2 lba:       462"));
  bench.use("wodim dev=/dev/sr0 gracetime=0 blank=fast");
  bench.use("wodim dev=/dev/sr0 gracetime=0 -sao -audio one.wav two.wav");
  CHECK(bench.disc().tracks.at(1).start == 310);
  CHECK(bench.disc().finalized);
  CHECK(failures(bench.commands()) == "");
}

TEST_CASE("cdrdao records what its sheet says and reads the same table back") {
  Bench bench;
  bench.box.write("disc.toc",
                  "CD_DA\nTRACK AUDIO\nAUDIOFILE \"one.wav\" 0\nTRACK AUDIO\nPREGAP 0:2:0\nAUDIOFILE \"two.wav\" 0\n");
  bench.use("cdrdao write -n --device /dev/sr0 disc.toc");
  CHECK(bench.disc().tracks.at(1).pregap == 310);
  CHECK(bench.disc().tracks.at(1).start == 460);
  CHECK(bench.disc().finalized);
  const std::string told = bench.use("cdrdao read-toc --fast-toc --device /dev/sr0 back.toc");
  CHECK_THAT(told, Contains("( 460)") || Contains("(   460)"));
  bench.use("cdparanoia -d /dev/sr0 -r 2 track");
  CHECK(bench.box.read("track") == Bench::audioOf(2, 400));
}

TEST_CASE("cdrskin tells of a write error, and of a disc that is closed") {
  Bench bench;
  bench.configure("fault = WRITE 3/0C/00 block 200\n");
  CHECK_THAT(bench.run("cdrskin dev=/dev/sr0 -sao -audio one.wav"), Contains("[3 0C 00]"));
  CHECK(bench.status != 0);
  bench.configure("");
  bench.insert();
  bench.use("cdrskin dev=/dev/sr0 -sao -audio one.wav");
  bench.run("cdrskin dev=/dev/sr0 -sao -audio one.wav");
  CHECK(bench.status != 0);
}

TEST_CASE("A program that is killed in mid-write leaves the sectors that it had written, and says so to the next") {
  Bench bench;
  bench.configure("pace = 200\n");
  const std::string line = "cd '" + bench.box.path() + "' && exec env " + bench.environment() +
                           "cdrskin dev=/dev/sr0 -tao -audio one.wav >/dev/null 2>&1 </dev/null";
  const pid_t child = ::fork();
  if (child == 0) ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
  for (int waits = 0; waits < 4000 && (bench.disc().blank() || bench.disc().tracks.at(0).end < 40); ++waits)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  bench.configure("");
  const Disc disc = bench.disc();
  REQUIRE_FALSE(disc.blank());
  CHECK(disc.sessionIsOpen());
  const auto written = static_cast<std::size_t>(disc.tracks.at(0).end);
  CHECK(written >= 40);
  const RawSector last = bench.sectors().read(disc.tracks.at(0).end - 1);
  CHECK(std::string(last.begin(), last.end()) == Bench::audioOf(1, 310).substr((written - 1) * 2352, 2352));
  // Such a disc has no table of contents that libburn could read.
  CHECK_THAT(bench.run("cdrskin dev=/dev/sr0 -minfo"), Contains("BURN_DISC_UNSUITABLE"));
  CHECK_THAT(bench.run("wodim dev=/dev/sr0 -msinfo"), Contains("Cannot read session offset"));
}

TEST_CASE("Two drives record at the same time, each on its own disc") {
  Bench bench;
  bench.insert("CD-R", 20000, "sr1");
  CHECK_THAT(bench.use("cdrskin --devices"), Contains("/dev/sr1"));
  bench.use("sh -c 'cdrskin dev=/dev/sr0 -sao -audio one.wav & cdrskin dev=/dev/sr1 -sao -audio two.wav; wait'");
  CHECK(bench.disc("sr0").tracks.at(0).end == 310);
  CHECK(bench.disc("sr1").tracks.at(0).end == 400);
  CHECK(failures(bench.commands("sr0") + bench.commands("sr1")) == "");
}

TEST_CASE("isoinfo reads the image of a data disc through its node") {
  Bench bench;
  bench.use("xorriso -as mkisofs -quiet -J -o image.iso files");
  bench.use("cdrskin dev=/dev/sr0 -tao -pad image.iso");
  CHECK_THAT(bench.use("isoinfo -J -f -i /dev/sr0"), Contains("/one"));
  CHECK(bench.run("isoinfo -J -x /one -i /dev/sr0") == noise(90000, 1));
}

}  // namespace emulated
