#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <catch2/catch.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "engines/virtual/Sandbox.h"

// The program's own fsync, renameat and pwrite stand before the system's here, and note what they are asked for.

namespace {

std::vector<std::string>& asked() {
  static std::vector<std::string> calls;
  return calls;
}

/// What was written past the system's cache, and whether such writes are refused.
struct PastTheCache {
  std::size_t bytes = 0;
  bool refused = false;
};

PastTheCache& pastTheCache() {
  static PastTheCache writes;
  return writes;
}

std::string nameOf(int descriptor) {
  std::array<char, 4096> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  const ssize_t length = readlink(link.c_str(), path.data(), path.size());
  return std::filesystem::path(std::string(path.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))))
      .filename()
      .string();
}

}  // namespace

extern "C" int fsync(int descriptor) {
  asked().push_back("fsync " + nameOf(descriptor));
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}

extern "C" int renameat(int from, const char* name, int to, const char* newName) noexcept {
  asked().push_back(std::string("rename ") + newName);
  return static_cast<int>(syscall(SYS_renameat2, from, name, to, newName, 0));
}

extern "C" ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t place) {
  if ((fcntl(descriptor, F_GETFL) & O_DIRECT) != 0) {
    if (pastTheCache().refused) {
      errno = EINVAL;
      return -1;
    }
    pastTheCache().bytes += size;
  }
  return syscall(SYS_pwrite64, descriptor, bytes, size, place);
}

namespace trackloom::engines::virtualrecorder {

namespace {

/// Some file systems have nothing but the cache.
bool hasMoreThanACache(const std::filesystem::path& folder) {
  const FileDescriptor file(open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
  return fcntl(file.get(), F_SETFL, O_DIRECT) == 0;
}

}  // namespace

TEST_CASE("The disc is marked before its first sector, and its content is on the medium before disc.ini says so") {
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  asked().clear();
  Script script(audioOrder({20}, true, true));
  script.onPhase = [](const std::string& phase) {
    if (phase == "read 1 0" || phase == "disc closing") asked().push_back(phase);
  };
  script.run(recorder);
  CHECK(asked() == std::vector<std::string>{"fsync disc.ini.new", "rename disc.ini", "fsync Disc 0001", "read 1 0",
                                            "disc closing", "fsync disc.bin", "fsync disc.cue.new",
                                            "fsync disc.ini.new", "rename disc.ini", "fsync Disc 0001",
                                            "rename disc.cue", "fsync Disc 0001"});
}

TEST_CASE("Sectors go past the system's cache where the file system can do that, and to their places in any case") {
  const bool refused = GENERATE(false, true);
  const Sandbox box;
  VirtualRecorder recorder = box.recorder();
  pastTheCache() = {0, refused};
  Script(audioOrder({1000, 300, 7}, false, false)).run(recorder);
  Script(audioOrder({600}, true, true)).run(recorder);
  pastTheCache().refused = false;
  const std::string silence(150 * audioSectorBytes, '\0');
  CHECK(readFile(box.disc() / "disc.bin") ==
        sectorsOf(AudioBlocks, 0, 0, 1000) + silence + sectorsOf(AudioBlocks, 1, 0, 300) + silence +
            sectorsOf(AudioBlocks, 2, 0, 7) + silence + sectorsOf(AudioBlocks, 0, 0, 600));
  if (!refused && hasMoreThanACache(box.root())) CHECK(pastTheCache().bytes > 1880 * audioSectorBytes);
}

}  // namespace trackloom::engines::virtualrecorder
