#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

#include "engines/audio/AudioFiles.h"
#include "engines/disc/SectorSource.h"

namespace trackloom::engines::writer {

/// An audio file of a disc with its length as measured before the write, in blocks.
struct MeasuredTrack {
  HostPath path;
  std::int32_t blocks = 0;
};

/// The tracks of an audio disc as one row of sectors, decoded ahead of the thread that reads them.
///
/// Two threads decode a track each. Both fill one bounded buffer, of which the track being read always has a part to
/// itself, so that work on later tracks never holds up the writing. A file that fails does so when its own sectors are
/// asked for, not earlier.
class ReadAhead final : public SectorSource {
 public:
  /// `stop` ends a wait in read(); the destructor ends and joins the decoding threads.
  ReadAhead(audio::AudioFiles& files, const std::vector<MeasuredTrack>& tracks, std::stop_token stop);
  ~ReadAhead() override;

  void read(std::span<std::byte> sectors) override;
  std::int16_t bufferPercent() override;

 private:
  struct Track {
    MeasuredTrack source;
    std::deque<std::vector<std::byte>> decoded;
    bool finished = false;
    std::exception_ptr failure;
  };

  void decodeTracks(const std::stop_token& stop);
  std::optional<std::size_t> claimTrack();
  void decode(std::size_t track, const std::stop_token& stop);
  void keep(std::size_t track, std::vector<std::byte> chunk, const std::stop_token& stop);
  void finish(std::size_t track, std::exception_ptr failure);
  bool hasRoom(std::size_t track) const;
  void fetchChunk();

  audio::AudioFiles& files_;
  std::stop_token stop_;

  // The chunk being handed out belongs to the reading thread alone.
  std::vector<std::byte> chunk_;
  std::size_t handedOut_ = 0;

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::vector<Track> tracks_;
  std::size_t claimed_ = 0;
  std::size_t current_ = 0;
  std::size_t buffered_ = 0;
  std::size_t unread_ = 0;

  std::array<std::jthread, 2> decoders_;
};

}  // namespace trackloom::engines::writer
