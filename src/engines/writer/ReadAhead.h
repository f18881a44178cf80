#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

#include "engines/audio/AudioFiles.h"
#include "engines/disc/SectorSource.h"
#include "engines/writer/DecodedTracks.h"

namespace trackloom::engines::writer {

/// The tracks of an audio disc as one row of sectors, decoded ahead of the thread that reads them.
///
/// Two threads decode a track each. Nobody ever waits for their end, since the file that one of them reads may never
/// answer: each holds all that it needs, and ends by itself once it is let go and its read returns. A file that fails
/// does so when its own sectors are asked for, not earlier.
class ReadAhead final : public SectorSource {
 public:
  /// Opens the sound of a track, from 0. It is called from the decoding threads, and what it holds lives as long as the
  /// last of them.
  using Opener = std::function<std::unique_ptr<audio::AudioStream>(std::size_t track)>;

  /// The lengths of the tracks in blocks. `stop` ends a wait in read(). Throws std::system_error without threads.
  ReadAhead(const std::vector<std::int32_t>& blocks, Opener open, std::stop_token stop);
  ~ReadAhead() override;
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  void read(std::span<std::byte> sectors) override;
  std::int16_t bufferPercent() override;

 private:
  struct Work;

  /// Lets the decoding threads go.
  struct LetGo {
    std::stop_source source;
    ~LetGo() { source.request_stop(); }
  };

  std::stop_token stop_;
  std::shared_ptr<Work> work_;
  LetGo letGo_;

  // The chunk being handed out.
  DecodedTracks::Chunk chunk_;
  std::size_t handedOut_ = 0;
};

}  // namespace trackloom::engines::writer
