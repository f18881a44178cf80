#pragma once

#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

namespace trackloom::engines::writer {

/// Memory that has been used and is used again, so that the system need not give and clear it for each chunk of a disc
/// anew. Safe from any thread.
class SpareChunks {
 public:
  using Chunk = std::vector<std::byte>;

  /// Holds anything.
  Chunk take(std::size_t bytes) {
    Chunk chunk = spare();
    chunk.resize(bytes);
    return chunk;
  }
  void give(Chunk chunk) {
    const std::lock_guard lock(mutex_);
    chunks_.push_back(std::move(chunk));
  }

 private:
  Chunk spare() {
    const std::lock_guard lock(mutex_);
    if (chunks_.empty()) return {};
    Chunk chunk = std::move(chunks_.back());
    chunks_.pop_back();
    return chunk;
  }

  std::mutex mutex_;
  std::vector<Chunk> chunks_;
};

}  // namespace trackloom::engines::writer
