#pragma once

#include <functional>
#include <string>
#include <vector>

#include "engines/disc/Recorder.h"
#include "engines/libburn/EmulatedDrive.h"

namespace trackloom::engines::libburn {

/// What a write asks of its source and tells its observer, in one row of lines: "begin 1", "read 5", "track 1 of 20",
/// "progress 1 6" and so on. The sectors of a track are full of its number.
class ToldWrite final : public SectorSource, public OperationObserver {
 public:
  explicit ToldWrite(BlockKind kind = AudioBlocks);
  ~ToldWrite() override;

  std::vector<std::string> lines;
  std::vector<std::int16_t> bufferPercents;
  /// Called with each line behind it.
  std::function<void(const std::string&)> onLine;

  void beginTrack(std::int16_t track) override;
  void read(std::span<std::byte> sectors) override;
  std::int16_t bufferPercent() override;

  void trackStarted(std::int16_t track, std::int32_t blocks) override;
  void progress(std::int16_t track, std::int32_t position, std::int16_t percent) override;
  void trackClosing(std::int16_t track) override;
  void sessionClosing() override;
  void discClosing() override;
  void erasing() override;

 private:
  void add(const std::string& line);

  std::size_t bytes_;
  std::int16_t number_ = 0;
};

/// A recorder of an emulated drive, which somebody has taken.
struct ToldRecorder {
  ToldRecorder();
  ~ToldRecorder();
  ToldRecorder(const ToldRecorder&) = delete;
  ToldRecorder& operator=(const ToldRecorder&) = delete;

  fakes::TempFolder folder;
  EmulatedDrive drive{folder};
  std::shared_ptr<Recorder> recorder = drive.recorders().front();

  /// What the deed fails with.
  template <class Deed>
  static std::string failureOf(const Deed& deed) {
    try {
      deed();
    } catch (const EngineError& error) {
      return error.words();
    } catch (const Stopped&) {
      return "stopped";
    }
    return "";
  }
  /// The commands since the last call.
  std::string commands();
  DiscState disc() const;

 private:
  std::size_t seen_ = 0;
};

}  // namespace trackloom::engines::libburn
