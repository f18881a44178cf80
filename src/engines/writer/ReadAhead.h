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
#include "engines/writer/LetGo.h"
#include "engines/writer/SourcesInUse.h"
#include "runtime/Paths.h"

namespace trackloom::engines::writer {

/// The tracks of an audio disc as one row of sectors, decoded ahead of the thread that reads them.
///
/// Two threads decode a track each, whose file is told to be in use from before it is opened until it is let go. Nobody
/// ever waits for their end, since the file that one of them reads may never answer: each holds all that it needs, and
/// ends by itself once it is let go and its read returns. A file that fails does so when its own sectors are asked for,
/// not earlier.
class ReadAhead final : public PieceSource {
 public:
  struct Track {
    HostPath file;
    std::int32_t blocks = 0;
  };
  /// Opens the sound of a track, from 0. It is called from the decoding threads, and what it holds lives as long as the
  /// last of them.
  using Opener = std::function<std::unique_ptr<audio::AudioStream>(std::size_t track)>;

  /// `stop` ends a wait in read(). Throws std::system_error without threads.
  ReadAhead(std::vector<Track> tracks, Opener open, std::shared_ptr<SourcesInUse> inUse, std::stop_token stop);
  ~ReadAhead() override;
  ReadAhead(const ReadAhead&) = delete;
  ReadAhead& operator=(const ReadAhead&) = delete;

  void read(std::span<std::byte> sectors) override;
  Piece take(std::size_t most) override;
  std::int16_t bufferPercent() override;

 private:
  struct Work;

  std::stop_token stop_;
  std::shared_ptr<Work> work_;
  LetGo letGo_;

  // The chunk being handed out.
  DecodedTracks::Chunk chunk_;
  std::size_t handedOut_ = 0;
};

}  // namespace trackloom::engines::writer
