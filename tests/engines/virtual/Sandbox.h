#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/virtual/VirtualRecorder.h"

namespace trackloom::engines::virtualrecorder {

/// A folder of its own with a freshly laid out recorder in it; gone with the test.
class Sandbox {
 public:
  Sandbox();
  ~Sandbox();
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  std::filesystem::path root() const { return root_; }
  std::filesystem::path folder() const { return root_ / "Virtual Recorder"; }
  std::filesystem::path tray() const { return folder() / "tray"; }
  std::filesystem::path shelf() const { return folder() / "shelf"; }
  std::filesystem::path disc() const { return tray() / "Disc 0001"; }
  VirtualRecorder recorder() const { return VirtualRecorder(HostPath(folder().string())); }

  void configure(const std::string& recorderIni) const;
  void describeDisc(const std::string& discIni) const;

 private:
  std::filesystem::path root_;
};

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& bytes);
/// Every file and folder below with its bytes, inode and times.
std::map<std::string, std::string> snapshot(const std::filesystem::path& folder);
std::vector<std::string> names(const std::filesystem::path& folder);

/// Sectors that tell their track and number, and differ from byte to byte.
std::string sectorsOf(BlockKind kind, int track, std::int32_t first, std::int32_t count);
std::span<const std::byte> bytesOf(const std::string& text);
/// Begins the order, writes sectorsOf() each track, `piece` blocks at a time, and finishes.
void writeDisc(Recorder& recorder, const WriteOrder& order, std::int32_t piece = 27);
/// All calls of a write but finish().
void writeTracks(DiscWrite& write, const WriteOrder& order, std::int32_t piece = 27);

WriteOrder audioOrder(std::vector<std::int32_t> tracks, bool closeSession, bool closeDisc);
WriteOrder dataOrder(std::int32_t blocks, bool closeSession, bool closeDisc);

/// The text of the EngineError that `action` must throw, and its number in front of the text's own.
std::string failureOf(const std::function<void()>& action);
/// Runs `action` in a child process; its result is the child's exit status, 128 + n when a signal ended it.
int inChild(const std::function<int()>& action);
/// Mounts a file system in memory on a new folder, for this process and its children alone, so best in a child;
/// `options` such as "size=1m". False: it may not be done here.
bool mountSmallFileSystem(const std::filesystem::path& folder, const char* options);
/// What a tool of the system prints on both streams; `command` is for the shell.
std::string outputOf(const std::string& command);

}  // namespace trackloom::engines::virtualrecorder
