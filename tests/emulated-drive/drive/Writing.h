#pragma once

#include <optional>

#include "Command.h"
#include "CueSheet.h"
#include "Medium.h"
#include "Pages.h"
#include "Settings.h"

namespace emulated {

/// What a drive knows of the write that goes on: the cue sheet, and how far its session is written.
class Writing {
 public:
  /// SEND CUE SHEET.
  void plan(const Command& command, const Medium& medium, const Pages& pages, const Settings& settings);
  /// WRITE(10) and WRITE(12).
  void write(const Command& command, Medium& medium, const Pages& pages);
  /// SYNCHRONIZE CACHE: ends the track that is written at once, or the session that is written to its last block; True:
  /// a session.
  bool synchronize(Medium& medium, const Pages& pages, const Settings& settings);
  /// RESERVE TRACK.
  void reserve(const Command& command, Medium& medium, const Pages& pages) const;
  /// CLOSE TRACK/SESSION.
  void close(const Command& command, Medium& medium, const Pages& pages, const Settings& settings) const;
  void forget() { sheet_.reset(); }

 private:
  void writeSession(const Command& command, std::int32_t block, std::int32_t count, Medium& medium);
  void requireShape(std::size_t bytes, std::int32_t block, std::int32_t count) const;
  void writeText(View sent, std::int32_t count, const Medium& medium) const;
  void beginSession(Medium& medium);
  void passEmptyBlocks(const Medium& medium);
  void writeTrack(View sent, std::int32_t block, std::int32_t count, Medium& medium, const Pages& pages) const;

  std::optional<CueSheet> sheet_;
  std::int32_t next_ = 0;
  bool begun_ = false;
};

}  // namespace emulated
