#include "engines/libburn/Library.h"

#include <dlfcn.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <utility>

#include "engines/disc/Sense.h"
#include "engines/libburn/ToldRecorder.h"
#include "fakes/NextFunction.h"

namespace {

constexpr const char* deadName = "TRACKLOOM_DEAD_LIBRARY";

/// What the library is asked, and what it answers in place of what it would.
struct Asked {
  std::vector<std::string> atStart;
  /// Why it does not write; null: it writes.
  const char* objection = nullptr;
  /// What it says before a write.
  const char* message = nullptr;
  int sources = 0;
  int made = 0;
  int freed = 0;
  int released = 0;
  int lists = 0;
};

Asked& asked() {
  static Asked asked;
  return asked;
}

using trackloom::fakes::theirs;

/// Counts what the program asks for and gives back, without what the library does of it within.
void count(int& calls, const void* caller) {
  Dl_info from{};
  const bool within =
      ::dladdr(caller, &from) != 0 && std::string(from.dli_fname).find("libburn.so") != std::string::npos;
  if (!within) ++calls;
}

void say(const char* words, const char* severity) {
  std::string text = words;
  std::string how = severity;
  burn::burn_msgs_submit(2, text.data(), 0, how.data(), nullptr);
}

}  // namespace

namespace burn {

extern "C" {

int burn_initialize() {
  if (::getenv(deadName) != nullptr) return 0;
  asked().atStart.push_back("initialize");
  return theirs<decltype(burn_initialize)>("burn_initialize")();
}

int burn_msgs_set_severities(char* queue, char* print, char* prefix) {
  asked().atStart.push_back(std::string("severities ") + queue + " " + print + " \"" + prefix + '"');
  return theirs<decltype(burn_msgs_set_severities)>("burn_msgs_set_severities")(queue, print, prefix);
}

void burn_preset_device_open(int exclusive, int blocking, int abortOnBusy) {
  asked().atStart.push_back("open " + std::to_string(exclusive) + " " + std::to_string(blocking) + " " +
                            std::to_string(abortOnBusy));
  theirs<decltype(burn_preset_device_open)>("burn_preset_device_open")(exclusive, blocking, abortOnBusy);
}

int burn_precheck_write(burn_write_opts* options, burn_disc* disc, char* reasons, int silent) {
  if (const char* const message = std::exchange(asked().message, nullptr)) say(message, "SORRY");
  if (asked().objection == nullptr)
    return theirs<decltype(burn_precheck_write)>("burn_precheck_write")(options, disc, reasons, silent);
  std::string(asked().objection).copy(reasons, BURN_REASONS_LEN);
  return 0;
}

/// The last one that has a source frees it, by the function that it has for that.
void burn_source_free(burn_source* source) {
  if (source->refcount == 1 && source->free_data != nullptr) ++asked().sources;
  theirs<decltype(burn_source_free)>("burn_source_free")(source);
}

void burn_drive_release(burn_drive* drive, int eject) {
  ++asked().released;
  CHECK(eject == 0);
  theirs<decltype(burn_drive_release)>("burn_drive_release")(drive, eject);
}

void burn_drive_info_free(burn_drive_info* list) {
  ++asked().lists;
  CHECK(asked().released == asked().lists);
  theirs<decltype(burn_drive_info_free)>("burn_drive_info_free")(list);
}

burn_disc* burn_disc_create() {
  count(asked().made, __builtin_return_address(0));
  return theirs<decltype(burn_disc_create)>("burn_disc_create")();
}

void burn_disc_free(burn_disc* disc) {
  count(asked().freed, __builtin_return_address(0));
  theirs<decltype(burn_disc_free)>("burn_disc_free")(disc);
}

burn_session* burn_session_create() {
  count(asked().made, __builtin_return_address(0));
  return theirs<decltype(burn_session_create)>("burn_session_create")();
}

void burn_session_free(burn_session* session) {
  count(asked().freed, __builtin_return_address(0));
  theirs<decltype(burn_session_free)>("burn_session_free")(session);
}

burn_track* burn_track_create() {
  count(asked().made, __builtin_return_address(0));
  return theirs<decltype(burn_track_create)>("burn_track_create")();
}

void burn_track_free(burn_track* track) {
  count(asked().freed, __builtin_return_address(0));
  theirs<decltype(burn_track_free)>("burn_track_free")(track);
}

burn_write_opts* burn_write_opts_new(burn_drive* drive) {
  count(asked().made, __builtin_return_address(0));
  return theirs<decltype(burn_write_opts_new)>("burn_write_opts_new")(drive);
}

void burn_write_opts_free(burn_write_opts* options) {
  count(asked().freed, __builtin_return_address(0));
  theirs<decltype(burn_write_opts_free)>("burn_write_opts_free")(options);
}

}  // extern "C"

}  // namespace burn

namespace trackloom::engines::libburn {

using Catch::Matchers::Contains;
using Lines = std::vector<std::string>;

namespace {

constexpr const char* deadTest = "A library that cannot be started in a process of its own";

/// A library that answers by itself again behind each test.
struct Library {
  Library() = default;
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() {
    asked().objection = asked().message = nullptr;
    forgetMessages();
  }
};

std::string grabFailure(const std::string& path) {
  return ToldRecorder::failureOf([&] { const GrabbedDrive drive(path); });
}

WriteOrder orderOf(BlockKind kind = AudioBlocks) {
  WriteOrder order;
  order.kind = kind;
  order.trackBlocks = {310, 20};
  order.closeDisc = false;
  return order;
}

std::string writeFailure(ToldRecorder& told, const WriteOrder& order) {
  ToldWrite write(order.kind);
  return ToldRecorder::failureOf([&] { told.recorder->write(order, write, write, {}); });
}

}  // namespace

TEST_CASE("The library is started once, silent, and told to take a drive alone or not at all") {
  ToldRecorder told;
  for (int turn = 0; turn < 2; ++turn) CHECK(grabFailure("/dev/sr0").empty());
  CHECK(asked().atStart == Lines{"initialize", "severities SORRY NEVER \"\"", "open 1 0 0"});
}

TEST_CASE("A library that cannot be started in a process of its own", "[.]") {
  if (::getenv(deadName) == nullptr) return;
  CHECK(grabFailure("/dev/sr0") == "the recording library cannot be started (2/04/00)");
}

TEST_CASE("A library that cannot be started is told") {
  ::setenv(deadName, "yes", 1);
  std::string program = "/proc/self/exe";
  std::string test = deadTest;
  char* words[] = {program.data(), test.data(), nullptr};
  pid_t id = 0;
  REQUIRE(::posix_spawn(&id, program.c_str(), nullptr, nullptr, words, environ) == 0);
  int end = 0;
  ::waitpid(id, &end, 0);
  ::unsetenv(deadName);
  CHECK(WIFEXITED(end));
  CHECK(WEXITSTATUS(end) == 0);
}

TEST_CASE("A drive that cannot be had is told, whatever the library said before, and one that was had is given back") {
  const Library library;
  ToldRecorder told;
  CHECK(grabFailure("/dev/sr0").empty());
  say("SCSI error: [3 0C 00] Medium error", "SORRY");
  const std::string failure = grabFailure("/dev/sr7");
  CHECK_THAT(failure, Catch::Matchers::StartsWith("the drive cannot be used") && Contains("(2/04/08)"));
  const int before = asked().lists;
  CHECK(grabFailure("/dev/sr0").empty());
  CHECK(asked().lists == before + 1);
  CHECK_THAT(told.drive.commands(), !Contains("1B 00 00 00 02") && !Contains("1B 00 00 00 03"));
}

TEST_CASE("Of what the library said the first sense is told, else its first words, else what is known") {
  const Library library;
  ToldRecorder told;
  CHECK(grabFailure("/dev/sr0").empty());
  forgetMessages();
  const auto failure = [](const Lines& said) {
    for (const std::string& words : said) say(words.c_str(), "SORRY");
    const std::string words = lastFailure("the deed failed", 0x030C00).words();
    forgetMessages();
    return words;
  };
  CHECK(failure({}) == "the deed failed (3/0C/00)");
  CHECK(failure({"smoke", "fire"}) == "the deed failed: smoke (3/0C/00)");
  CHECK(failure({"smoke", "SCSI error: [5 26 00] Illegal", "SCSI error: [4 44 00] Hardware"}) ==
        "the deed failed: the drive does not take these parameters (5/26/00)");
  CHECK(failure({}) == "the deed failed (3/0C/00)");
  say("of no matter", "NOTE");
  CHECK(failure({}) == "the deed failed (3/0C/00)");
}

TEST_CASE("A sense is found behind whatever brackets stand before it") {
  CHECK(senseIn("[3 0C 00]") == 0x030C00);
  CHECK(senseIn("[[5 26 01] twice") == 0x052601);
  CHECK(senseIn("[x] [5 2") == 0);
  CHECK(senseIn("[x] [5 26] [E 1D 07] [3 0C 00]") == 0x0E1D07);
  CHECK(senseIn("nothing") == 0);
  CHECK(senseIn("") == 0);
}

TEST_CASE("What the library does not write is told with its reasons, and the disc is as it was") {
  const Library library;
  ToldRecorder told;
  asked().objection = "no such mode";
  CHECK(writeFailure(told, orderOf()) == "the drive cannot write this: no such mode (5/30/05)");
  CHECK(told.disc().status == DiscEmpty);
}

TEST_CASE("A write that fails is told with its own sense, and not with what was said before it") {
  const Library library;
  ToldRecorder told;
  asked().message = "SCSI error: [4 44 00] Hardware error";
  told.drive.configure("fault = WRITE 3/0C/00 block 200\n");
  CHECK(writeFailure(told, orderOf()) == "the disc could not be written: write error (3/0C/00)");
}

TEST_CASE("All that a write asks the library for is given back") {
  for (const BlockKind kind : {AudioBlocks, DataBlocks}) {
    ToldRecorder told;
    asked().made = asked().freed = asked().sources = 0;
    CHECK(writeFailure(told, orderOf(kind)).empty());
    CHECK(asked().made == 5);
    CHECK(asked().freed == 5);
    CHECK(asked().sources == 2);
  }
}

}  // namespace trackloom::engines::libburn
