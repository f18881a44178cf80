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
#include <cstring>
#include <fstream>
#include <memory>
#include <span>
#include <sstream>

#include "engines/virtual/DiscFolder.h"
#include "engines/virtual/VirtualRecorders.h"
#include "fakes/TestFiles.h"

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
  REQUIRE(fs::exists(path));
  return fakes::contentOf(path);
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
  const auto bytes = bytesOfSector(kind);
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

void Script::tell(const std::string& phase) {
  if (!phase.starts_with("read ")) phases.push_back(phase);
  onPhase(phase);
}

void Script::beginTrack(std::int16_t track) {
  track_ = track;
  position_ = 0;
  tell("begin " + std::to_string(track));
}

void Script::read(std::span<std::byte> sectors) {
  tell("read " + std::to_string(track_) + " " + std::to_string(position_));
  const auto count = static_cast<std::int32_t>(sectors.size() / bytesOfSector(order.kind));
  const std::string content = sectorsOf(order.kind, track_ - 1, position_, count);
  std::memcpy(sectors.data(), content.data(), content.size());
  position_ += count;
}

void Script::trackStarted(std::int16_t track, std::int32_t blocks) {
  tell("started " + std::to_string(track) + " " + std::to_string(blocks));
}

void Script::progress(std::int16_t track, std::int32_t position, std::int16_t) {
  const std::int32_t length = order.trackBlocks.at(static_cast<std::size_t>(track) - 1);
  if (position == length) tell("progress " + std::to_string(track) + " " + std::to_string(length));
}

void Script::trackClosing(std::int16_t track) {
  tell("closing " + std::to_string(track));
}

void writeDisc(Recorder& recorder, const WriteOrder& order) {
  Script(order).run(recorder);
}

void stopWriteAt(Recorder& recorder, const WriteOrder& order, const std::string& phase) {
  Script script(order);
  script.onPhase = [&](const std::string& reached) {
    if (reached == phase) script.stop.request_stop();
  };
  CHECK_THROWS_AS(script.run(recorder), Stopped);
}

DiscState discIn(Recorder& recorder) {
  const auto snapshot = recorder.look();
  REQUIRE(snapshot->disc);
  return *snapshot->disc;
}

std::string ejectFailure(Recorder& recorder) {
  return failureOf([&] { recorder.eject(); });
}

void writeImage(Recorder& recorder, const std::string& image, bool closeDisc) {
  struct Bytes : SectorSource {
    explicit Bytes(const std::string& all) : left(all) {}
    void read(std::span<std::byte> sectors) override {
      std::memcpy(sectors.data(), left.data(), sectors.size());
      left.remove_prefix(sectors.size());
    }
    std::int16_t bufferPercent() override { return 100; }
    std::string_view left;
  } source(image);
  OperationObserver nobody;
  REQUIRE(image.size() % dataSectorBytes == 0);
  const auto blocks = static_cast<std::int32_t>(image.size() / dataSectorBytes);
  recorder.write(dataOrder(blocks, true, closeDisc), source, nobody, {});
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
