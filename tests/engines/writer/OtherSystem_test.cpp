#include <fcntl.h>
#include <pthread.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <catch2/catch.hpp>
#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <limits>
#include <thread>

#include "engines/writer/FakeWorld.h"
#include "engines/writer/IsoLibrary.h"
#include "fakes/NextFunction.h"

namespace {

/// What the system and the library of these tests do otherwise than those of this machine.
struct System {
  /// How many threads there are to spare; below 0 as many as are wanted.
  std::atomic<int> threads = -1;
  std::atomic<bool> makesNamelessFiles = true;
  /// What becomes of the cache's bytes: an error, -1 for none at all that come back, 0 for nothing unusual.
  std::atomic<int> cacheWrites = 0;
  std::atomic<int> cacheReads = 0;
  std::atomic<int> cacheRoom = 0;
  /// Where sources begin to hang, and whether they do; in bytes.
  std::atomic<std::int64_t> hangsFrom = std::int64_t{1} << 60;
  /// How many writes of an image's size go on before one hangs.
  std::atomic<int> writesUntilOneHangs = std::numeric_limits<int>::max();
  /// The library's call that finds no memory.
  std::atomic<const char*> isoFailsAt = "";
  std::atomic<bool> imagesEndEarly = false;
  std::string cacheName;
  std::vector<off_t> roomAsked;
};

System& here() {
  static System system;
  return system;
}

/// A system that is as this one again behind each test.
struct OtherSystem {
  OtherSystem() = default;
  OtherSystem(const OtherSystem&) = delete;
  OtherSystem& operator=(const OtherSystem&) = delete;
  ~OtherSystem() {
    here().threads = -1;
    here().makesNamelessFiles = true;
    here().cacheWrites = here().cacheReads = here().cacheRoom = 0;
    here().hangsFrom = std::int64_t{1} << 60;
    here().writesUntilOneHangs = std::numeric_limits<int>::max();
    here().isoFailsAt = "";
    here().imagesEndEarly = false;
    here().cacheName.clear();
    here().roomAsked.clear();
  }
};

using trackloom::fakes::theirs;

bool isCache(int file) {
  std::error_code none;
  const auto path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), none).string();
  return path.find("/scratch/") != std::string::npos;
}

/// The library's own answer, unless it is to find no memory in this call.
template <class... Args>
int isoCall(const char* name, Args... args) {
  if (name == std::string_view(here().isoFailsAt)) return static_cast<int>(ISO_OUT_OF_MEM);
  return theirs<int(Args...)>(name)(args...);
}

}  // namespace

extern "C" {

int pthread_create(pthread_t* thread, const pthread_attr_t* how, void* (*work)(void*), void* argument) noexcept {
  if (here().threads == 0) return EAGAIN;
  if (here().threads > 0) --here().threads;
  static auto* const next = theirs<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
  return next(thread, how, work, argument);
}

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  if ((flags & O_TMPFILE) == O_TMPFILE && !here().makesNamelessFiles) {
    errno = EOPNOTSUPP;
    return -1;
  }
  static auto* const next = theirs<int(const char*, int, ...)>("open");
  return next(path, flags, mode);
}

int mkostemp(char* path, int flags) {
  here().cacheName = path;
  static auto* const next = theirs<int(char*, int)>("mkostemp");
  return next(path, flags);
}

int posix_fallocate(int file, off_t offset, off_t length) {
  here().roomAsked = {offset, length};
  if (here().cacheRoom != 0) return here().cacheRoom;
  static auto* const next = theirs<int(int, off_t, off_t)>("posix_fallocate");
  return next(file, offset, length);
}

ssize_t write(int file, const void* bytes, std::size_t count) {
  constexpr std::size_t imageSteps = 100'000;
  if (count > imageSteps) {
    while (here().writesUntilOneHangs == 0) std::this_thread::yield();
    --here().writesUntilOneHangs;
  }
  static auto* const next = theirs<ssize_t(int, const void*, std::size_t)>("write");
  return next(file, bytes, count);
}

ssize_t pwrite(int file, const void* bytes, std::size_t count, off_t offset) {
  if (here().cacheWrites != 0 && isCache(file)) {
    errno = here().cacheWrites;
    return -1;
  }
  static auto* const next = theirs<ssize_t(int, const void*, std::size_t, off_t)>("pwrite");
  return next(file, bytes, count, offset);
}

ssize_t pread(int file, void* bytes, std::size_t count, off_t offset) {
  if (here().cacheReads != 0 && isCache(file)) {
    errno = std::max(here().cacheReads.load(), 0);
    return here().cacheReads < 0 ? 0 : -1;
  }
  while (offset >= here().hangsFrom) std::this_thread::yield();
  static auto* const next = theirs<ssize_t(int, void*, std::size_t, off_t)>("pread");
  return next(file, bytes, count, offset);
}

int iso_write_opts_new(IsoWriteOpts** made, int profile) {
  return isoCall("iso_write_opts_new", made, profile);
}
int iso_write_opts_set_joliet(IsoWriteOpts* options, int enable) {
  return isoCall("iso_write_opts_set_joliet", options, enable);
}
int iso_image_new(const char* name, IsoImage** made) {
  return isoCall("iso_image_new", name, made);
}
int iso_image_create_burn_source(IsoImage* image, IsoWriteOpts* options, burn_source** made) {
  const int result = isoCall("iso_image_create_burn_source", image, options, made);
  if (here().imagesEndEarly) (*made)->read_xt = [](burn_source*, unsigned char*, int) { return 0; };
  return result;
}
int iso_dir_get_children(const IsoDir* folder, IsoDirIter** made) {
  return isoCall("iso_dir_get_children", folder, made);
}
int iso_image_add_new_dir(IsoImage* image, IsoDir* parent, const char* name, IsoDir** made) {
  return isoCall("iso_image_add_new_dir", image, parent, name, made);
}
int iso_image_add_new_file(IsoImage* image, IsoDir* parent, const char* name, IsoStream* stream, IsoFile** made) {
  return isoCall("iso_image_add_new_file", image, parent, name, stream, made);
}

}  // extern "C"

namespace trackloom::engines::writer {

namespace {

/// A world on another system, with a track that is written through the cache.
class CachedWorld : public FakeWorld {
 public:
  CachedWorld() {
    writer->SetCacheAudioTracks(true);
    writer->AddAudioTrack(track("a", 700), 1);
  }
  std::string detail() const { return writers.failureDetail().lastFailure(); }
  std::string scratch() const { return folder / "scratch"; }

 private:
  OtherSystem system_;
};

constexpr const char* noThread = "Resource temporarily unavailable";

}  // namespace

TEST_CASE("A cache that cannot be made, kept, written or read back says why") {
  CachedWorld world;
  std::string why;
  SECTION("where it is to be made stands a file") {
    world.folder.write("scratch", "x");
    why = "no cache can be made in " + world.scratch() + ": Not a directory";
  }
  SECTION("without room") {
    here().cacheRoom = ENOSPC;
    why = "the cache has no room for 1646400 bytes in " + world.scratch() + ": No space left on device";
  }
  SECTION("written") {
    here().cacheWrites = EIO;
    why = "the cache cannot be written: Input/output error";
  }
  SECTION("read back") {
    here().cacheReads = ENXIO;
    why = "the cache cannot be read back: No such device or address";
  }
  SECTION("read back in part") {
    here().cacheReads = -1;
    why = "the cache cannot be read back: Input/output error";
  }
  world.write();
  CHECK(world.heard.lines.back() == "OnWriteError 0 0");
  CHECK(world.detail() == why);
}

TEST_CASE("The room of a cache is taken from its beginning") {
  CachedWorld world;
  REQUIRE(world.write());
  CHECK(here().roomAsked == std::vector<off_t>{0, 1646400});
}

TEST_CASE("Where the file system makes no nameless files, the cache has a name that is gone at once") {
  CachedWorld world;
  here().makesNamelessFiles = false;
  bool nameless = false;
  world.heard.onLine = [&](const std::string& line) {
    if (line.starts_with("OnTrackCacheStart")) nameless = std::filesystem::is_empty(world.scratch());
  };
  REQUIRE(world.write());
  CHECK(world.heard.lines.back() == "OnOperationComplete");
  CHECK(nameless);
  CHECK(here().cacheName == world.scratch() + "/track-XXXXXX");
}

TEST_CASE("Where the system makes nameless files, none has ever a name") {
  CachedWorld world;
  REQUIRE(world.write());
  CHECK(world.heard.lines.back() == "OnOperationComplete");
  CHECK(here().cacheName.empty());
}

TEST_CASE("Where the system has too few threads to spare, a write ends in an error that says so") {
  const OtherSystem system;
  FakeWorld world;
  world.writer->AddAudioTrack(world.track("a", 5), 1);
  SECTION("none") {
    here().threads = 0;
    CHECK(world.linesOfWrite() == Lines{"OnWriteError 1 0"});
    CHECK(world.writers.failureDetail().lastFailure() == noThread);
  }
  SECTION("one for the writer, or one more for the reader") {
    here().threads = GENERATE(1, 2);
    CHECK(world.linesOfWrite() == Lines{"OnWriteError 3 0"});
    CHECK(world.writer->LastDeviceErrorText() == noThread);
  }
  here().threads = -1;
  CHECK(world.recorder->orders.empty());
  CHECK(world.linesOfWrite().back() == "OnOperationComplete");
}

TEST_CASE("Where the system has no thread to spare, no image is made, and the call says so") {
  const OtherSystem system;
  FakeWorld world;
  world.writer->AddDataFile(DiscPath("\\a"), world.track("a", 5));
  here().threads = 0;
  CHECK_FALSE(world.writer->CreateIsoImage(world.folder.host("x.iso")));
  CHECK(world.heard.lines == Lines{"OnWriteError 2 0"});
  CHECK(world.writers.failureDetail().lastFailure() == world.folder / "x.iso" + ": " + noThread);
  CHECK_FALSE(world.folder.has("x.iso"));
}

TEST_CASE("A library that finds no memory fails the image with what it was doing") {
  const OtherSystem system;
  const auto [call, doing] = GENERATE(
      Catch::Generators::table<const char*, const char*>({{"iso_image_new", "making an image"},
                                                          {"iso_write_opts_new", "making an image"},
                                                          {"iso_write_opts_set_joliet", "making an image"},
                                                          {"iso_image_create_burn_source", "making an image"},
                                                          {"iso_dir_get_children", "reading a folder of the image"},
                                                          {"iso_image_add_new_dir", "adding the folder Rock"},
                                                          {"iso_image_add_new_file", "adding Song.mp3"}}));
  INFO(call);
  FakeWorld world;
  world.writer->AddDataFile(DiscPath("\\Rock\\Song.mp3"), world.track("a", 5));
  here().isoFailsAt = call;
  CHECK_FALSE(world.writer->CreateIsoImage(world.folder.host("x.iso")));
  CHECK(world.heard.lines.back() == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure() ==
        std::string(doing) + ": " + iso_error_to_msg(static_cast<int>(ISO_OUT_OF_MEM)));
  CHECK_FALSE(world.folder.has("x.iso"));
  world.writer->SetDiscMode(DataBlocks);
  CHECK(world.linesOfWrite() == Lines{"OnWriteError 2 0"});
}

TEST_CASE("An image that the library ends early is an error of its file, with no number") {
  const OtherSystem system;
  FakeWorld world;
  world.writer->SetDiscMode(DataBlocks);
  world.writer->AddDataFile(DiscPath("\\a"), world.track("a", 5));
  here().imagesEndEarly = true;
  world.write();
  CHECK(world.heard.lines.back() == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure() == "the image of the data disc ended early");
}

TEST_CASE("A source that is cut short in the middle of an image fails it, and what was there stays") {
  const OtherSystem system;
  FakeWorld world;
  // However slow the listener is, the second source is not read before it is cut short.
  here().hangsFrom = std::int64_t{2} << 20;
  const HostPath second = world.folder.file("second", noise(3000000, 2));
  world.heard.onLine = [&](const std::string& line) {
    if (line != "OnImageTrackStart 1") return;
    std::filesystem::resize_file(second.text, 1000);
    here().hangsFrom = std::int64_t{1} << 60;
  };
  world.writer->AddDataFile(DiscPath("\\a"), world.folder.file("a", noise(3000000, 1)));
  world.writer->AddDataFile(DiscPath("\\b"), second);
  CHECK_FALSE(world.writer->CreateIsoImage(world.folder.file("made.iso", "the old one")));
  CHECK(world.heard.lines.back() == "OnWriteError 2 0");
  CHECK(world.writers.failureDetail().lastFailure() == second.text + ": changed since it was added");
  CHECK(world.folder.read("made.iso") == "the old one");
}

TEST_CASE("What an event throws within the call comes out of it, and no half image is left") {
  const OtherSystem system;
  FakeWorld world;
  // However slow the listener is, the image is not whole before it throws.
  here().hangsFrom = std::int64_t{8} << 20;
  world.heard.onLine = [](const std::string& line) {
    if (line.starts_with("OnTrackCacheStart")) throw std::runtime_error("the listener's own");
  };
  world.writer->AddDataFile(DiscPath("\\a"), world.folder.file("a", noise(std::size_t{30} << 20, 1)));
  std::filesystem::create_directory(world.folder / "images");
  CHECK_THROWS_WITH(world.writer->CreateIsoImage(world.folder.host("images/x.iso")), "the listener's own");
  here().hangsFrom = std::int64_t{1} << 60;
  while (!std::filesystem::is_empty(world.folder / "images")) std::this_thread::yield();
  CHECK(world.heard.has("OnTrackCacheStart 1 15360"));
}

TEST_CASE("An image of which all is read is not put in its place any more once its event has thrown") {
  const OtherSystem system;
  FakeWorld world;
  world.writer->AddDataFile(DiscPath("\\a"), world.folder.file("a", noise(300'000, 1)));
  std::filesystem::create_directory(world.folder / "images");
  here().writesUntilOneHangs = 1;
  world.heard.onLine = [](const std::string& line) {
    if (line.starts_with("OnTrackCacheStart")) throw std::runtime_error("the listener's own");
  };
  CHECK_THROWS_WITH(world.writer->CreateIsoImage(world.folder.host("images/x.iso")), "the listener's own");
  here().writesUntilOneHangs = std::numeric_limits<int>::max();
  while (!std::filesystem::is_empty(world.folder / "images"))
    REQUIRE_FALSE(std::filesystem::exists(world.folder / "images/x.iso"));
}

}  // namespace trackloom::engines::writer
