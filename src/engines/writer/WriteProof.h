#pragma once

#include <cstdint>
#include <stop_token>
#include <vector>

#include "engines/disc/Recorder.h"

namespace trackloom::engines::writer {

/// The proof that a write is on the disc: stands between its sources, its recorder and who hears of it, counts what the
/// recorder takes and what it says it has recorded, and keeps a checksum of each sector where all are to be read back.
class WriteProof final : public SectorSource, public OperationObserver {
 public:
  /// All of them outlive the proof.
  WriteProof(const WriteOrder& order, SectorSource& source, OperationObserver& observer, bool readBack);

  /// Throws EngineError where the recorder took or recorded less than the order says, and said nothing.
  void requireAllRecorded() const;
  /// Reads all tracks of the order back from the disc. Throws EngineError with the first block that differs, Stopped.
  void requireReadBack(Recorder& recorder, const std::stop_token& stop) const;

  void beginTrack(std::int16_t track) override { source_.beginTrack(track); }
  void read(std::span<std::byte> sectors) override;
  std::int16_t bufferPercent() override { return source_.bufferPercent(); }

  void trackStarted(std::int16_t track, std::int32_t blocks) override { observer_.trackStarted(track, blocks); }
  void progress(std::int16_t track, std::int32_t position, std::int16_t bufferPercent) override;
  void trackClosing(std::int16_t track) override { observer_.trackClosing(track); }
  void sessionClosing() override { observer_.sessionClosing(); }
  void discClosing() override { observer_.discClosing(); }

 private:
  const WriteOrder& order_;
  SectorSource& source_;
  OperationObserver& observer_;
  bool readBack_;
  std::int64_t taken_ = 0;
  /// Of each track the last position that was told.
  std::vector<std::int32_t> recorded_;
  /// Of each sector, in the order in which they were taken.
  std::vector<std::uint64_t> checksums_;
};

}  // namespace trackloom::engines::writer
