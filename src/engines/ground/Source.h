#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "engines/ground/SourceFile.h"

namespace trackloom::engines {

/// A file that goes onto discs, and what is known of its one content: how it stood when it was queued, and a checksum
/// of each piece that was read since. All readings share it, so that a second copy gets what the first one got. Safe
/// from any thread.
class Source {
 public:
  Source(HostPath path, const FileNote& note) : path_(std::move(path)), note_(note) {}

  const HostPath& path() const { return path_; }
  const FileNote& note() const { return note_; }

  /// Whether the piece has the checksum that it had when it was read first, which may be now.
  bool agrees(std::size_t piece, std::uint64_t checksum);
  /// The checksums of all pieces so far; nothing where a piece was never read.
  std::vector<std::optional<std::uint64_t>> checksums() const;

 private:
  HostPath path_;
  FileNote note_;
  mutable std::mutex mutex_;
  std::vector<std::optional<std::uint64_t>> checksums_;
};

/// One reading of a source, from before its first byte to behind its last. Once it is open, nothing that happens to its
/// name matters. Used by one thread.
class SourceReading {
 public:
  /// Opens the file. Throws EngineError when that fails, and when it is another content than the one that was queued.
  explicit SourceReading(std::shared_ptr<Source> source);
  /// Reads a file that nobody queued.
  explicit SourceReading(HostPath path);

  const SourceFile& file() const { return file_; }
  std::int64_t size() const { return file_.size(); }

  /// Fewer bytes than `bytes` holds only at the end. Throws EngineError, also for a piece that differs from what was
  /// read there before.
  std::size_t readAt(std::int64_t offset, std::span<std::uint8_t> bytes);
  /// What lies in memory from `offset` on; nothing only behind the end. Valid until the next read. Throws like readAt.
  std::span<const std::uint8_t> from(std::int64_t offset);
  /// To be called when everything was read: throws EngineError when that may not be one content.
  void requireUnchanged() const;

  EngineError failure(std::string_view why) const { return file_.failure(why); }
  /// "changed while it was being recorded".
  EngineError changed() const;

 private:
  void load(std::int64_t piece);
  bool mayHideAChange(const FileNote& now) const;
  void readAgain() const;

  SourceFile file_;
  std::shared_ptr<Source> source_;
  FileNote::Time opened_;
  std::int64_t piece_ = -1;
  std::vector<std::uint8_t> bytes_;  // of piece_
};

}  // namespace trackloom::engines
