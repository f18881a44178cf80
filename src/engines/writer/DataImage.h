#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "engines/writer/DataQueue.h"
#include "engines/writer/FileContent.h"
#include "engines/writer/FormerSession.h"
#include "engines/writer/ImageTree.h"
#include "engines/writer/PieceSource.h"

namespace trackloom::engines::writer {

/// What an image does about a source that is not there any more when the image is sized.
enum class Missing : std::uint8_t { Refused, LeftOut };

struct ImageTerms {
  std::string label;
  Missing missing = Missing::Refused;
  /// Of the padding behind the files as much is left out as keeps the image within so many blocks, where that is
  /// enough.
  std::int32_t room = std::numeric_limits<std::int32_t>::max();
  /// The block of the disc at which the image begins; all addresses in it are those of the disc.
  std::int32_t start = 0;
  /// Whose tree the image shows beside its own files.
  std::optional<FormerSession> former = std::nullopt;
};

/// The image of a data disc: ISO 9660 (ECMA-119, level 3) with a Joliet tree, made while it is read. Its size stands
/// before its first sector does. File data lie in alphabetical order of disc paths, whatever the case.
///
/// The library makes the sectors on a thread of its own and hands them over through a bounded buffer, from which they
/// are taken in large pieces.
class DataImage final : public PieceSource {
 public:
  /// Looks at every source. Once `stop` is asked for, read() and take() fetch nothing more, nor wait, and throw
  /// Stopped. Throws EngineError for a source that cannot be read or has changed since it was queued, and for whatever
  /// keeps the image from being made.
  DataImage(std::vector<DataEntry> entries, const ImageTerms& terms, std::shared_ptr<SourcesInUse> inUse,
            std::stop_token stop = {});
  ~DataImage() override;
  DataImage(const DataImage&) = delete;
  DataImage& operator=(const DataImage&) = delete;

  /// In data sectors, padding included; saturated.
  std::int32_t blocks() const;
  std::size_t fileCount() const { return contents_.size(); }
  /// Bytes of the file that lies at this place among all, from 0.
  std::int64_t fileSize(std::size_t file) const { return contents_.at(file).size(); }
  const ReadingState& reading() const { return state_; }

  void read(std::span<std::byte> sectors) override;
  Piece take(std::size_t most) override;
  std::int16_t bufferPercent() override;

 private:
  struct EndOfSource {
    void operator()(burn_source* source) const;
  };
  void addTree(const std::vector<DataEntry>& entries, Missing missing);
  FileContent* addContent(const std::shared_ptr<Source>& source, Missing missing);
  void openSource(const ImageTerms& terms);
  void openSourceWith(std::uint32_t padding, std::int32_t start);
  Piece fetchPiece(std::size_t most);
  void waitForBytes(std::size_t count);
  std::size_t bytesReady() const;

  std::stop_token stop_;
  ReadingState state_;
  std::deque<FileContent> contents_;
  std::unique_ptr<IsoImage, UnrefImage> image_;
  std::unique_ptr<burn_source, EndOfSource> source_;
  std::int64_t bytes_ = 0;
  std::int64_t fetched_ = 0;

  /// What read() hands out of.
  Piece piece_;
  std::size_t handedOut_ = 0;
};

}  // namespace trackloom::engines::writer
