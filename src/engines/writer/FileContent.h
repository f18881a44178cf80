#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "engines/ground/Source.h"
#include "engines/writer/IsoLibrary.h"
#include "engines/writer/SourcesInUse.h"

namespace trackloom::engines::writer {

/// How far the sources of one image have been read. Written by the library's thread, read by the image's owner.
class ReadingState {
 public:
  explicit ReadingState(std::shared_ptr<SourcesInUse> inUse);

  /// What the library calls to read a FileContent.
  IsoStreamIface calls;
  const std::shared_ptr<SourcesInUse> inUse;
  std::atomic<std::size_t> file = 0;
  std::atomic<std::int64_t> bytesOfFile = 0;

  /// Keeps the first failure.
  void fail(const std::string& words);
  /// "" while all is well.
  std::string failure() const;

 private:
  mutable std::mutex mutex_;
  std::string failure_;
};

/// The bytes of one source as the image takes them. A file that can't be read, or may not be one content from its
/// queueing to its last byte, is an error of the whole image, never filled up with zeros.
class FileContent {
 public:
  /// Looks at the source. Throws EngineError when it can't be read or is not what it was when it was queued.
  FileContent(std::shared_ptr<Source> source, std::size_t index, ReadingState& state);

  std::int64_t size() const { return source_->note().size; }
  std::time_t modified() const { return source_->note().modified.seconds; }
  /// Its place among the files of the image, from 0.
  std::size_t index() const { return index_; }

  /// The library's view of this object, which must outlive it.
  IsoStream* newStream();

 private:
  static FileContent& of(IsoStream* stream);
  static IsoStreamIface calls();
  friend class ReadingState;

  int open();
  int close();
  int read(void* target, std::size_t count);

  std::shared_ptr<Source> source_;
  std::size_t index_;
  ReadingState& state_;
  std::optional<SourcesInUse::Use> use_;
  std::optional<SourceReading> reading_;
  std::int64_t position_ = 0;
};

}  // namespace trackloom::engines::writer
