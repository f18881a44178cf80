#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fakes/RipperStage.h"
#include "ports/CDRipperX.h"

namespace trackloom::fakes {

/// A rip engine in memory, which keeps the contract of engines; its files hold 1,000 bytes. A rip goes on only when a
/// test lets it: step by step, to its end, or not at all, where the test raises events of its own.
class FakeRipper final : public CDRipperX {
 public:
  explicit FakeRipper(RipperStage& stage);
  ~FakeRipper() override;

  CDRipperEvents* events = nullptr;
  std::vector<std::int16_t> queue() const;

  bool busy() const;
  /// Raises the next event of the rip under way.
  void step();
  void finish();

  void listen(CDRipperEvents* listener) override;
  std::int16_t DeviceCount() override;
  std::string DeviceLetter(std::int16_t drive) override;
  std::string DeviceVendor(std::int16_t drive) override;
  std::string DeviceModel(std::int16_t drive) override;
  bool SelectRipDrive(std::int16_t drive) override;
  std::int32_t LastDriveError() override;
  bool DiscPresent() override;
  bool ReadTOC() override;
  std::int16_t TrackCount() override;
  std::int32_t TrackStart(std::int16_t track) override;
  std::int32_t TrackLength(std::int16_t track) override;
  bool TrackIsAudio(std::int16_t track) override;
  std::string SectorsToTime(std::int32_t sectors) override;
  std::int16_t MaxSpeed() override;
  void SetSpeed(std::int16_t multiple) override;
  bool AttachEncoder(Mp3Stream& encoder) override;
  void SetUseEncoder(bool on) override;
  void ClearQueue() override;
  bool QueueTrack(std::int16_t track, const HostPath& path, std::int32_t callerNumber) override;
  bool StartRip() override;
  void CancelRip() override;

 private:
  struct Order {
    std::int16_t track;
    std::string path;
    std::int32_t number;
  };

  const FakeRipDrive& driveAt(std::int16_t drive) const;
  FakeRipTrack trackAt(std::int16_t track) const;
  void note(const std::string& call, const std::string& arguments = "");
  void add(std::function<void()> step);
  void tell(std::int32_t code, std::int32_t value);
  /// Unless the track has no file.
  void tellOfTrack(std::int32_t code, std::int32_t value);
  void rip(const Order& order);
  void begin(const Order& order);
  void end(const Order& order, bool whole);

  RipperStage& stage_;
  std::optional<std::int16_t> selected_;
  /// As it was when it was last read.
  std::vector<FakeRipTrack> contents_;
  std::vector<Order> queue_;
  std::deque<std::function<void()>> steps_;
  /// Where the running track lies, empty where there is none.
  std::string aside_;
};

}  // namespace trackloom::fakes
