#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <span>
#include <utility>
#include <vector>

#include "engines/disc/SectorSource.h"

namespace trackloom::engines::writer {

/// Memory for pieces of up to one size, which is used again, so that no more of it is ever taken than lies between
/// source and disc at once. It is the system's own, since the memory that threads get from the language's store stays
/// with each of them. Safe from any thread.
class PieceMemory {
 public:
  explicit PieceMemory(std::size_t size) : size_(size) {}
  ~PieceMemory() {
    for (std::byte* bytes : spare_) ::munmap(bytes, size_);
  }
  PieceMemory(const PieceMemory&) = delete;
  PieceMemory& operator=(const PieceMemory&) = delete;

  std::byte* take() {
    const std::lock_guard lock(mutex_);
    if (spare_.empty()) return more();
    std::byte* const bytes = spare_.back();
    spare_.pop_back();
    return bytes;
  }
  void give(std::byte* bytes) {
    const std::lock_guard lock(mutex_);
    spare_.push_back(bytes);
  }

 private:
  std::byte* more() const {
    void* const bytes = ::mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (bytes == MAP_FAILED) throw std::bad_alloc();
    return static_cast<std::byte*>(bytes);
  }

  const std::size_t size_;
  std::mutex mutex_;
  std::vector<std::byte*> spare_;
};

/// Sectors on their way from a source to the disc. They are handed on with their memory, which holds anything at first,
/// since a disc's worth of copies is felt.
class Piece {
 public:
  Piece() = default;
  explicit Piece(std::size_t size) : bytes_(std::make_unique_for_overwrite<std::byte[]>(size).release()), size_(size) {}
  /// In such memory, to which it goes back.
  Piece(std::size_t size, std::shared_ptr<PieceMemory> memory) : size_(size) {
    std::byte* const bytes = memory->take();
    bytes_ = {bytes, GiveBack{std::move(memory)}};
  }

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  std::byte* data() { return bytes_.get(); }
  std::span<std::byte> bytes() { return {bytes_.get(), size_}; }
  std::span<const std::byte> bytes() const { return {bytes_.get(), size_}; }
  /// Keeps the first bytes.
  void cutTo(std::size_t size) { size_ = std::min(size_, size); }

 private:
  struct GiveBack {
    std::shared_ptr<PieceMemory> memory;

    void operator()(std::byte* bytes) const {
      if (memory)
        memory->give(bytes);
      else
        const std::unique_ptr<std::byte[]> owned(bytes);
    }
  };

  std::unique_ptr<std::byte[], GiveBack> bytes_;
  std::size_t size_ = 0;
};

/// A source that hands its sectors out in pieces of the size in which it makes them.
class PieceSource : public SectorSource {
 public:
  /// At least one sector and at most `most` bytes, whole sectors of one track. Throws like read().
  virtual Piece take(std::size_t most) {
    Piece piece(most);
    read(piece.bytes());
    return piece;
  }
};

}  // namespace trackloom::engines::writer
