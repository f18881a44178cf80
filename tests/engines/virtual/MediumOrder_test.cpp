#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <catch2/catch.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "engines/virtual/Sandbox.h"

// The program's own fsync and renameat stand before the system's here, and note what they are asked for.

namespace {

std::vector<std::string>& asked() {
  static std::vector<std::string> calls;
  return calls;
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

namespace trackloom::engines::virtualrecorder {

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

}  // namespace trackloom::engines::virtualrecorder
