#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <span>
#include <stop_token>
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

/// A write of sectorsOf() each track, with the places at which a test steps in.
struct Script : SectorSource, OperationObserver {
  explicit Script(WriteOrder what) : order(std::move(what)) {}

  void beginTrack(std::int16_t track) override;
  void read(std::span<std::byte> sectors) override;
  std::int16_t bufferPercent() override { return 50; }
  void trackStarted(std::int16_t track, std::int32_t blocks) override;
  void progress(std::int16_t track, std::int32_t position, std::int16_t bufferPercent) override;
  void trackClosing(std::int16_t track) override;
  void sessionClosing() override { tell("session closing"); }
  void discClosing() override { tell("disc closing"); }
  void erasing() override { tell("erasing"); }
  void tell(const std::string& phase);

  WriteOrder order;
  /// Told in this order: "begin 1", "started 1 300", "read 1 0" (track and first block), "progress 1 300 of 300" (at
  /// the track's end alone), "closing 1", "session closing", "disc closing".
  std::function<void(const std::string&)> onPhase = [](const std::string&) {};
  /// All phases but reads.
  std::vector<std::string> phases;
  std::stop_source stop;

  void run(Recorder& recorder) { recorder.write(order, *this, *this, stop.get_token()); }

 private:
  std::int16_t track_ = 0;
  std::int32_t position_ = 0;
};

void writeDisc(Recorder& recorder, const WriteOrder& order);
/// Stops a write at that phase, which must then end in Stopped.
void stopWriteAt(Recorder& recorder, const WriteOrder& order, const std::string& phase);
/// The disc that a look sees; there must be one.
DiscState discIn(Recorder& recorder);
/// How the recorder refuses to eject, "no failure" where it does not.
std::string ejectFailure(Recorder& recorder);
/// Byte for byte what an image file holds, as a source of one data track.
void writeImage(Recorder& recorder, const std::string& image, bool closeDisc);

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
