#pragma once

#include <sys/stat.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "engines/writer/IsoLibrary.h"
#include "runtime/FileDescriptor.h"
#include "runtime/Paths.h"

namespace trackloom::engines::writer {

/// How far the sources of one image have been read. Written by the library's thread, read by the image's owner.
class ReadingState {
 public:
  ReadingState();

  /// What the library calls to read a FileContent.
  IsoStreamIface calls;
  std::atomic<std::size_t> file = 0;
  std::atomic<std::int64_t> bytesOfFile = 0;
  std::atomic<bool> cancelled = false;

  /// Keeps the first failure.
  void fail(const std::string& words);
  /// "" while all is well.
  std::string failure() const;

 private:
  mutable std::mutex mutex_;
  std::string failure_;
};

/// The bytes of one source file as the image takes them: exactly as many as it had when the image was sized. A file
/// that has vanished, shrunk or grown since is an error of the whole image, never filled up with zeros.
class FileContent {
 public:
  /// Throws RuntimeError when the source is not a regular file that can be opened for reading.
  FileContent(HostPath source, std::size_t index, ReadingState& state);

  std::int64_t size() const { return size_; }
  std::time_t modified() const { return modified_; }
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
  bool fillBuffer();
  int failed(const std::string& what, int systemError);

  HostPath source_;
  std::size_t index_;
  ReadingState& state_;
  std::int64_t size_ = 0;
  std::time_t modified_ = 0;

  FileDescriptor file_;
  std::int64_t position_ = 0;
  std::vector<std::byte> buffer_;
  std::size_t used_ = 0;
};

}  // namespace trackloom::engines::writer
