#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "engines/disc/DriveSnapshot.h"
#include "engines/disc/WriteOrder.h"
#include "engines/libburn/Node.h"

namespace trackloom::engines::libburn {

/// What a recorder is to do with the blocks that come (MMC-3, 6.3.10).
struct WriteParameters {
  BlockKind kind;
  std::int32_t pause;
  bool test;
  bool guarded;
  /// What a closed session leaves room for.
  bool nextSession;
};

/// The commands of a CD recorder that the library has no calls for (MMC-3): looks, reading, closing, the tray, and
/// tracks that leave their session open. Used by one thread at a time; everything throws EngineError.
class Drive {
 public:
  Drive(const std::string& path, Hold hold) : node_(path, hold) {}

  DriveIdentity identity();
  /// The drive's own number; empty: it tells none.
  std::string serialNumber();
  bool writesDiscs();
  /// Waits that long for a drive that becomes ready.
  bool hasDisc(std::chrono::milliseconds patience);
  /// What lies in it is a CD, and not a disc of another kind that it may know.
  bool hasCompactDisc();
  /// All that the tables of the disc say, byte by byte: two equal ones are of discs with the same tracks.
  Reply tables();
  /// A disc whose last write was cut off, and one that is no CD, is closed.
  DiscState disc();

  void prepare(const WriteParameters& parameters);
  void setSpeed(std::int16_t multiple);
  void calibrate();
  /// Where the next block of a track goes.
  std::int32_t nextWritable();
  /// Waits while the drive's buffer is full, but no longer than `goOn` says.
  void write(std::int32_t block, std::int32_t count, std::span<const std::byte> sectors,
             const std::function<bool()>& goOn);
  std::int16_t bufferPercent();
  /// Everything of the track is on the disc, and the track is closed.
  void closeTrack();
  void closeSession();
  /// Calls `waiting` now and then until the disc is blank.
  void erase(bool quick, const std::function<void()>& waiting);
  std::vector<std::byte> read(BlockKind kind, std::int32_t block, std::int32_t count);
  void lockTray(bool locked);
  void openTray();

 private:
  void require(std::int32_t sense, const char* what);
  /// Until nothing goes on in the background; throws where that fails.
  void awaitIdle(
      const char* what, const std::function<void()>& waiting = [] {});
  /// What it can do (MMC-3, 6.3.11), without what stands before the page.
  Reply capabilities();
  Reply trackInformation(std::uint32_t number);
  std::vector<DiscTrack> tracksUpTo(std::uint32_t last);
  void addRoom(DiscState& disc);

  Node node_;
};

}  // namespace trackloom::engines::libburn
