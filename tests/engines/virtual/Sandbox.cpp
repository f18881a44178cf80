#include "engines/virtual/Sandbox.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <catch2/catch.hpp>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <sstream>

#include "engines/virtual/DiscFolder.h"
#include "engines/virtual/VirtualRecorders.h"

namespace trackloom::engines::virtualrecorder {

namespace fs = std::filesystem;

Sandbox::Sandbox() {
  std::string name = (fs::temp_directory_path() / "trackloom-recorder-XXXXXX").string();
  REQUIRE(mkdtemp(name.data()) != nullptr);
  root_ = name;
  createVirtualRecorder(HostPath(folder().string()));
}

Sandbox::~Sandbox() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void Sandbox::configure(const std::string& recorderIni) const {
  writeFile(folder() / "recorder.ini", recorderIni);
}

void Sandbox::describeDisc(const std::string& discIni) const {
  writeFile(disc() / "disc.ini", discIni);
}

std::string readFile(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  REQUIRE(stream);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void writeFile(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

std::map<std::string, std::string> snapshot(const fs::path& folder) {
  std::map<std::string, std::string> entries;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    struct stat status {};
    REQUIRE(lstat(entry.path().c_str(), &status) == 0);
    std::ostringstream facts;
    facts << status.st_ino << ' ' << status.st_mode << ' ' << status.st_size << ' ' << status.st_mtim.tv_sec << '.'
          << status.st_mtim.tv_nsec << ' ' << status.st_ctim.tv_sec << '.' << status.st_ctim.tv_nsec << '\n';
    if (!entry.is_symlink() && entry.is_regular_file()) facts << readFile(entry.path());
    entries[entry.path().string()] = facts.str();
  }
  return entries;
}

std::vector<std::string> names(const fs::path& folder) {
  std::vector<std::string> result;
  for (const auto& entry : fs::directory_iterator(folder)) result.push_back(entry.path().filename().string());
  std::sort(result.begin(), result.end());
  return result;
}

std::string sectorsOf(BlockKind kind, int track, std::int32_t first, std::int32_t count) {
  const auto bytes = static_cast<std::size_t>(sectorBytes(kind));
  std::string sectors(bytes * static_cast<std::size_t>(count), '\0');
  std::uint32_t state = static_cast<std::uint32_t>(first) * 2654435761U + static_cast<std::uint32_t>(track) + 1U;
  for (std::size_t at = 0; at < sectors.size(); ++at) {
    if (at % bytes == 0)
      state = (static_cast<std::uint32_t>(first) + static_cast<std::uint32_t>(at / bytes)) * 2654435761U +
              static_cast<std::uint32_t>(track) + 1U;
    state = state * 1664525U + 1013904223U;
    sectors[at] = static_cast<char>(state >> 24);
  }
  return sectors;
}

std::span<const std::byte> bytesOf(const std::string& text) {
  return std::as_bytes(std::span(text));
}

void writeTracks(DiscWrite& write, const WriteOrder& order, std::int32_t piece) {
  int track = 0;
  for (const std::int32_t blocks : order.trackBlocks) {
    write.startTrack();
    for (std::int32_t at = 0; at < blocks; at += piece)
      write.write(bytesOf(sectorsOf(order.kind, track, at, std::min(piece, blocks - at))));
    write.closeTrack();
    ++track;
  }
  if (order.closeSession) write.closeSession();
  if (order.closeDisc) write.closeDisc();
}

void writeDisc(Recorder& recorder, const WriteOrder& order, std::int32_t piece) {
  const std::unique_ptr<DiscWrite> write = recorder.begin(order);
  writeTracks(*write, order, piece);
  write->finish();
}

WriteOrder audioOrder(std::vector<std::int32_t> tracks, bool closeSession, bool closeDisc) {
  WriteOrder order;
  order.trackBlocks = std::move(tracks);
  order.closeSession = closeSession;
  order.closeDisc = closeDisc;
  return order;
}

WriteOrder dataOrder(std::int32_t blocks, bool closeSession, bool closeDisc) {
  WriteOrder order = audioOrder({blocks}, closeSession, closeDisc);
  order.kind = DataBlocks;
  return order;
}

std::string failureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const EngineError& failure) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "%06X ", static_cast<unsigned>(failure.number()));
    return number.data() + std::string(failure.what());
  }
  return "no failure";
}

int inChild(const std::function<int()>& action) {
  const pid_t child = fork();
  REQUIRE(child >= 0);
  if (child == 0) {
    int result = 99;
    try {
      result = action();
    } catch (const std::exception&) {
      result = 98;
    }
    _exit(result);
  }
  int status = 0;
  REQUIRE(waitpid(child, &status, 0) == child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool mountSmallFileSystem(const fs::path& folder, const char* options) {
  const uid_t user = geteuid();
  const gid_t group = getegid();
  if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
  if (user != 0) {
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    writeFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
  }
  fs::create_directory(folder);
  return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("tmpfs", folder.c_str(), "tmpfs", 0, options) == 0;
}

std::string outputOf(const std::string& command) {
  struct ClosePipe {
    void operator()(FILE* stream) const { pclose(stream); }
  };
  const std::unique_ptr<FILE, ClosePipe> pipe(popen((command + " 2>&1").c_str(), "r"));
  REQUIRE(pipe);
  std::string output;
  std::array<char, 4096> buffer{};
  for (std::size_t count = 1; count > 0;) {
    count = std::fread(buffer.data(), 1, buffer.size(), pipe.get());
    output.append(buffer.data(), count);
  }
  return output;
}

}  // namespace trackloom::engines::virtualrecorder
