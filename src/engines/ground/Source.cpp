#include "engines/ground/Source.h"

#include <xxhash.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace trackloom::engines {

namespace {

constexpr std::int64_t pieceBytes = 65'536;
/// No file system in use has coarser time stamps than FAT with its two seconds.
constexpr std::int64_t coarsestStamp = 3;  // seconds

std::uint64_t checksumOf(std::span<const std::uint8_t> bytes) {
  return XXH3_64bits(bytes.data(), bytes.size());
}

FileNote::Time now() {
  const auto time = std::chrono::system_clock::now().time_since_epoch();
  return {.seconds = std::chrono::floor<std::chrono::seconds>(time).count(), .nanoseconds = 0};
}

}  // namespace

bool Source::agrees(std::size_t piece, std::uint64_t checksum) {
  const std::lock_guard lock(mutex_);
  if (checksums_.size() <= piece) checksums_.resize(piece + 1);
  if (!checksums_[piece]) checksums_[piece] = checksum;
  return checksums_[piece] == checksum;
}

std::vector<std::optional<std::uint64_t>> Source::checksums() const {
  const std::lock_guard lock(mutex_);
  return checksums_;
}

SourceReading::SourceReading(std::shared_ptr<Source> source)
    : file_(source->path()), source_(std::move(source)), opened_(now()) {
  if (!file_.note().mayBeContentOf(source_->note())) throw failure("changed since it was added");
}

SourceReading::SourceReading(HostPath path)
    : file_(std::move(path)), source_(std::make_shared<Source>(file_.path(), file_.note())), opened_(now()) {}

EngineError SourceReading::changed() const {
  return failure("changed while it was being recorded");
}

std::size_t SourceReading::readAt(std::int64_t offset, std::span<std::uint8_t> bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const auto known = from(offset + static_cast<std::int64_t>(done));
    if (known.empty()) break;
    const std::size_t count = std::min(known.size(), bytes.size() - done);
    std::copy_n(known.begin(), count, bytes.begin() + static_cast<std::ptrdiff_t>(done));
    done += count;
  }
  return done;
}

std::span<const std::uint8_t> SourceReading::from(std::int64_t offset) {
  if (offset >= size()) return {};
  if (const std::int64_t piece = offset / pieceBytes; piece != piece_) load(piece);
  return std::span<const std::uint8_t>(bytes_).subspan(static_cast<std::size_t>(offset % pieceBytes));
}

void SourceReading::load(std::int64_t piece) {
  const std::int64_t begin = piece * pieceBytes;
  piece_ = -1;
  bytes_.resize(static_cast<std::size_t>(std::min(pieceBytes, size() - begin)));
  if (file_.readAt(begin, bytes_) < bytes_.size()) throw changed();
  if (!source_->agrees(static_cast<std::size_t>(piece), checksumOf(bytes_))) throw changed();
  piece_ = piece;
}

// A write may leave the stamps of the one before it, which came within the same tick of the file system's clock.
bool SourceReading::mayHideAChange(const FileNote& note) const {
  return note != file_.note() || std::max(note.modified, note.changed).seconds + coarsestStamp > opened_.seconds;
}

void SourceReading::requireUnchanged() const {
  const FileNote note = file_.presentNote();
  if (!note.mayBeContentOf(file_.note())) throw changed();
  if (mayHideAChange(note)) readAgain();
}

void SourceReading::readAgain() const {
  const auto checksums = source_->checksums();
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(pieceBytes));
  for (std::size_t piece = 0; piece < checksums.size(); ++piece) {
    if (!checksums[piece]) continue;
    const std::size_t count = file_.readAt(static_cast<std::int64_t>(piece) * pieceBytes, bytes);
    if (checksumOf(std::span(bytes).first(count)) != checksums[piece]) throw changed();
  }
}

}  // namespace trackloom::engines
