#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "runtime/Paths.h"

namespace trackloom {

/// Hears what is found in a folder, file by file, as events on the window's thread.
class FolderReader {
 public:
  virtual ~FolderReader() = default;

  virtual void fileFound(const std::string& name) = 0;
  /// Bytes of the file that was found last.
  virtual void lengthFound(std::int64_t bytes) = 0;
  /// Nothing more comes.
  virtual void allFound() = 0;
  /// The folder, or the file that was found last, cannot be read: nothing more comes.
  virtual void listingFailed() = 0;
};

/// Looks into folders beside the window's thread, so that one that is slow, or never answers, holds up nobody.
class FolderListing {
 public:
  virtual ~FolderListing() = default;

  /// As long as the caller holds it, the work goes on; once it is dropped, nothing more is heard of it.
  using Hold = std::shared_ptr<void>;

  /// Lists the regular files that end in one of `extensions` (ASCII, whatever its case), those of the first extension
  /// first, each sorted by upper-cased name. The reader, which outlives the hold, may hear of files before this
  /// returns.
  [[nodiscard]] virtual Hold list(const HostPath& folder, std::vector<std::string> extensions,
                                  FolderReader& reader) = 0;
  /// Calls `found`, perhaps before this returns, if `folder` is a folder, and never if it is none.
  [[nodiscard]] virtual Hold find(const HostPath& folder, std::function<void()> found) = 0;
  /// Whether a regular file is there. The call waits for the answer, with patience.
  virtual bool hasFile(const HostPath& file) = 0;
  /// The last `length` bytes of the file, nothing of a shorter one. The call waits for them, with patience. Throws
  /// RuntimeError.
  virtual std::string endOf(const HostPath& file, std::size_t length) = 0;
};

}  // namespace trackloom
