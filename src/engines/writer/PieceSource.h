#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>

#include "engines/disc/SectorSource.h"

namespace trackloom::engines::writer {

/// Sectors on their way from a source to the disc. They are handed on with their memory, which is as large as they are
/// and was never filled with anything else, since a disc's worth of copies is felt.
class Piece {
 public:
  Piece() = default;
  explicit Piece(std::size_t size) : bytes_(std::make_unique_for_overwrite<std::byte[]>(size)), size_(size) {}

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  std::byte* data() { return bytes_.get(); }
  std::span<std::byte> bytes() { return {bytes_.get(), size_}; }
  std::span<const std::byte> bytes() const { return {bytes_.get(), size_}; }
  /// Keeps the first bytes.
  void cutTo(std::size_t size) { size_ = std::min(size_, size); }

 private:
  std::unique_ptr<std::byte[]> bytes_;
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
