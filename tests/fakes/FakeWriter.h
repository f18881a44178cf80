#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/FakeQueues.h"
#include "fakes/WriterStage.h"

namespace trackloom::fakes {

/// A writer engine in memory, which keeps the contract of engines. An operation goes on only when a test lets it: step
/// by step, to its end, or not at all, where the test raises events of its own.
class FakeWriter final : public CDWriterXP {
 public:
  FakeWriter(std::string name, WriterStage& stage, CDWriterEvents& listener);
  ~FakeWriter() override;

  CDWriterEvents& events;
  FakeAudioQueue audioQueue;
  FakeDataQueue dataQueue;
  std::string errorText;

  bool busy() const;
  /// Raises the next event of the operation under way.
  void step();
  void finish();

  std::int16_t DriveCount() override;
  std::string DriveLetter(std::int16_t drive) override;
  std::string DriveVendor(std::int16_t drive) override;
  std::string DriveProduct(std::int16_t drive) override;
  bool SelectDrive(std::int16_t drive) override;
  bool HasWriteGuard() override;
  void EnableWriteGuard(bool on) override;
  std::int16_t MaxWriteSpeed() override;
  void SetWriteSpeed(std::int16_t multiple) override;
  bool MediaLoaded() override;
  std::int32_t DiscStatus() override;
  std::int32_t DiscType() override;
  bool DiscRewritable() override;
  std::int16_t SessionCount() override;
  std::int32_t LastSessionStatus() override;
  std::int32_t FreeBlocks(std::int32_t kind) override;
  bool EjectDisc() override;
  std::int32_t BlocksToBytes(std::int32_t blocks, std::int32_t kind) override;
  std::string BlocksToTime(std::int32_t blocks) override;
  void ClearAudioQueue() override;
  bool AddAudioTrack(const HostPath& path, std::int16_t number) override;
  void ListAudioTracks() override;
  bool RemoveAudioTrack(std::int16_t number) override;
  std::int32_t AudioQueueBlocks() override;
  void ClearDataQueue() override;
  bool AddDataFile(const DiscPath& disc, const HostPath& source) override;
  bool RemoveDataFile(const DiscPath& disc) override;
  std::int32_t DataQueueBlocks() override;
  bool ImportLastSession(bool takeOver) override;
  void SetDiscMode(std::int32_t mode) override;
  void SetTestMode(bool on) override;
  bool TestMode() override;
  void SetCloseDisc(bool on) override;
  bool CloseDisc() override;
  void SetCloseSession(bool on) override;
  void SetCacheAudioTracks(bool on) override;
  bool CacheAudioTracks() override;
  void SetCacheDataTrack(bool on) override;
  bool CacheDataTrack() override;
  void SetVolumeLabel(const std::string& label) override;
  void StartWrite() override;
  void AbortWrite() override;
  bool WriteIsoImage(const HostPath& image) override;
  bool CreateIsoImage(const HostPath& image) override;
  bool EraseDisc(bool quick) override;
  bool CloseLastSession(bool alsoDisc) override;
  std::string LastDeviceErrorText() override;

 private:
  /// The tracks of one write, in blocks, and what becomes of the disc.
  struct Order {
    BlockKind kind = AudioBlocks;
    std::vector<std::int32_t> tracks;
    bool cached = false;
    bool closesDisc = false;
  };

  const FakeDrive& driveAt(std::int16_t drive) const;
  /// The disc in the selected drive, or null.
  FakeDisc* disc();
  void note(const std::string& call);
  void set(const std::string& setting, bool& value, bool on);

  void add(std::function<void()> step);
  void fail(std::int32_t code, std::int32_t number, const std::string& words);
  /// A real write that has begun and goes no further leaves the disc unusable.
  void spoil();
  bool sourcesAreThere() const;
  Order orderOfQueue() const;
  /// Lets the write fail before its first event where it cannot begin; True: it does.
  bool refused(const Order& order);
  void begin(const Order& order);
  void cacheTrack(std::int16_t track, std::int32_t blocks);
  /// False: the write fails in this track, which has so many blocks before it.
  bool writeTrack(std::int16_t track, std::int32_t blocks, std::int32_t before);
  void record(const Order& order);

  std::string name_;
  WriterStage& stage_;
  std::optional<std::int16_t> selected_;
  std::deque<std::function<void()>> steps_;
  BlockKind mode_ = AudioBlocks;
  bool testMode_ = false, closeDisc_ = false, closeSession_ = false, cacheAudio_ = false, cacheData_ = false;
  bool refusedAudio_ = false, refusedData_ = false;
  /// A real write has reached the disc and has not ended.
  bool writing_ = false;
};

/// Makes FakeWriters named CDR1, CDR2 in the order the main window asks for them.
class FakeEngines final : public WriterEngines {
 public:
  FakeEngines();
  ~FakeEngines() override;

  WriterStage stage;
  std::unique_ptr<CDWriterXP> create(CDWriterEvents& listener) override;
  /// A new process asks for its first engine again.
  void restart() { made_ = 0; }

 private:
  int made_ = 0;
};

}  // namespace trackloom::fakes
