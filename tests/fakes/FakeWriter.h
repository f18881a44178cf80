#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ports/CDWriterXP.h"

namespace trackloom::fakes {

struct FakeDrive {
  std::string letter = "D";
  std::string vendor = "ACME";
  std::string product = "Writer";
  std::int16_t maxSpeed = 10;
  bool writeGuard = true;
  bool refuses = false;
};

struct FakeDisc {
  std::int32_t status = DiscEmpty;
  bool rewritable = false;
  std::int32_t freeAudio = 359849;
  std::int32_t freeData = 359849;
};

/// What all fake engines of one machine share: its drives, the disc, the files, and a transcript of every call that
/// changes something or asks the drive.
struct WriterStage {
  std::vector<FakeDrive> drives{FakeDrive{}};
  std::optional<FakeDisc> disc = FakeDisc{};
  bool ejectFails = false;
  /// Length in blocks of the files that count as audio; all others are refused.
  std::map<std::string, std::int32_t> audio;
  /// Size in blocks of the files that can be read as data; all others are refused.
  std::map<std::string, std::int32_t> data;
  std::vector<std::string> transcript;

  /// The part of the transcript since the last call.
  std::vector<std::string> take() { return std::exchange(transcript, {}); }
};

/// A writer engine in memory. It never writes by itself: a test raises the events of a write.
class FakeWriter final : public CDWriterXP {
 public:
  FakeWriter(std::string name, WriterStage& stage, CDWriterEvents& listener)
      : events(listener), name_(std::move(name)), stage_(stage) {}

  CDWriterEvents& events;
  std::vector<std::pair<std::int16_t, std::string>> audioQueue;
  std::map<std::string, std::string> dataQueue;

  std::int16_t DriveCount() override;
  std::string DriveLetter(std::int16_t drive) override { return drive_(drive).letter; }
  std::string DriveVendor(std::int16_t drive) override { return drive_(drive).vendor; }
  std::string DriveProduct(std::int16_t drive) override { return drive_(drive).product; }
  bool SelectDrive(std::int16_t drive) override;
  bool HasWriteGuard() override;
  void EnableWriteGuard(bool on) override;
  std::int16_t MaxWriteSpeed() override { return selected_ ? drive_(*selected_).maxSpeed : std::int16_t{0}; }
  void SetWriteSpeed(std::int16_t multiple) override;
  bool MediaLoaded() override;
  std::int32_t DiscStatus() override { return stage_.disc ? stage_.disc->status : DiscStatusUnknown; }
  std::int32_t DiscType() override { return DiscTypeCdRom; }
  bool DiscRewritable() override { return stage_.disc && stage_.disc->rewritable; }
  std::int16_t SessionCount() override { return 0; }
  std::int32_t LastSessionStatus() override { return SessionEmpty; }
  std::int32_t FreeBlocks(std::int32_t kind) override;
  bool EjectDisc() override;
  std::int32_t BlocksToBytes(std::int32_t blocks, std::int32_t kind) override;
  std::string BlocksToTime(std::int32_t blocks) override;
  void ClearAudioQueue() override;
  bool AddAudioTrack(const HostPath& path, std::int16_t number) override;
  void ListAudioTracks() override;
  bool RemoveAudioTrack(std::int16_t number) override;
  std::int32_t AudioQueueBlocks() override { return audioBlocks_; }
  void ClearDataQueue() override;
  bool AddDataFile(const DiscPath& disc, const HostPath& source) override;
  bool RemoveDataFile(const DiscPath& disc) override;
  std::int32_t DataQueueBlocks() override { return dataBlocks_; }
  bool ImportLastSession(bool takeOver) override;
  void SetDiscMode(std::int32_t mode) override;
  void SetTestMode(bool on) override { testMode_ = on; }
  bool TestMode() override { return testMode_; }
  void SetCloseDisc(bool on) override { closeDisc_ = on; }
  bool CloseDisc() override { return closeDisc_; }
  void SetCloseSession(bool on) override;
  void SetCacheAudioTracks(bool on) override { cacheAudio_ = on; }
  bool CacheAudioTracks() override { return cacheAudio_; }
  void SetCacheDataTrack(bool on) override { cacheData_ = on; }
  bool CacheDataTrack() override { return cacheData_; }
  void SetVolumeLabel(const std::string& label) override;
  void StartWrite() override;
  void AbortWrite() override;
  bool WriteIsoImage(const HostPath&) override { return false; }
  bool CreateIsoImage(const HostPath&) override { return false; }
  bool EraseDisc(bool) override { return false; }
  bool CloseLastSession(bool) override { return false; }
  std::string LastDeviceErrorText() override { return errorText; }

  std::string errorText;

 private:
  const FakeDrive& drive_(std::int16_t drive) const { return stage_.drives.at(static_cast<std::size_t>(drive)); }
  bool takeOut(const DiscPath& disc);
  void note(const std::string& call) { stage_.transcript.push_back(name_ + "." + call); }

  std::string name_;
  WriterStage& stage_;
  std::optional<std::int16_t> selected_;
  std::int32_t audioBlocks_ = 0;
  std::int32_t dataBlocks_ = 0;
  bool testMode_ = false, closeDisc_ = false, cacheAudio_ = false, cacheData_ = false;
};

/// Makes FakeWriters named CDR1, CDR2 in the order the main window asks for them.
class FakeEngines final : public WriterEngines {
 public:
  WriterStage stage;
  std::unique_ptr<CDWriterXP> create(CDWriterEvents& listener) override;
  /// A new process asks for its first engine again.
  void restart() { made_ = 0; }

 private:
  int made_ = 0;
};

}  // namespace trackloom::fakes
