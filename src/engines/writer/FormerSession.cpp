#include "engines/writer/FormerSession.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <vector>

#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"

namespace trackloom::engines::writer {

namespace {

constexpr std::int32_t blocksAtOnce = 32;
constexpr const char* notTakenOver = "the earlier session of the disc cannot be taken over: ";

bool holds(const DiscTrack& track, std::int64_t block) {
  return track.kind == DataBlocks && block >= track.start && block < track.start + std::int64_t{track.length};
}

bool sameTrack(const DiscTrack& one, const DiscTrack& other) {
  return one.kind == other.kind && one.start == other.start && one.length == other.length;
}

/// The sectors of a disc as the library asks for them.
class DiscSectors {
 public:
  DiscSectors(std::shared_ptr<Recorder> recorder, std::vector<DiscTrack> tracks)
      : recorder_(std::move(recorder)), tracks_(std::move(tracks)) {}

  int readBlock(std::uint32_t block, std::uint8_t* target);
  void requireNoFailure() const {
    if (failure_) throw EngineError(failure_->kind(), failure_->number(), notTakenOver + failure_->words());
  }

 private:
  void load(std::int64_t block);
  int failed(const EngineError& error);

  std::shared_ptr<Recorder> recorder_;
  std::vector<DiscTrack> tracks_;
  std::int64_t first_ = 0;
  std::vector<std::byte> sectors_;
  std::optional<EngineError> failure_;
};

void DiscSectors::load(std::int64_t block) {
  const auto track = std::ranges::find_if(tracks_, [block](const DiscTrack& one) { return holds(one, block); });
  if (track == tracks_.end())
    throw deviceError(sense::outOfRange,
                      "its lists of files lead to block " + std::to_string(block) + ", where nothing is recorded");
  const auto count = std::min<std::int64_t>(blocksAtOnce, track->start + std::int64_t{track->length} - block);
  sectors_ = recorder_->read(static_cast<std::int32_t>(block), static_cast<std::int32_t>(count));
  first_ = block;
}

int DiscSectors::failed(const EngineError& error) {
  if (!failure_) failure_.emplace(error);
  return static_cast<int>(ISO_DATA_SOURCE_FATAL);
}

int DiscSectors::readBlock(std::uint32_t block, std::uint8_t* target) {
  constexpr auto sector = static_cast<std::int64_t>(dataSectorBytes);
  try {
    if (block < first_ || block >= first_ + std::ssize(sectors_) / sector) load(block);
    std::memcpy(target, sectors_.data() + (block - first_) * sector, dataSectorBytes);
    return 1;
  } catch (const EngineError& error) {
    return failed(error);
  } catch (const std::exception& error) {
    // Nothing may pass through the library.
    return failed(deviceError(sense::readError, error.what()));
  }
}

using SharedSectors = std::shared_ptr<DiscSectors>;

struct Unref {
  void operator()(IsoDataSource* source) const { iso_data_source_unref(source); }
};

/// The library frees it when the last of its users does not need it any more.
std::unique_ptr<IsoDataSource, Unref> sourceOf(const SharedSectors& sectors) {
  auto kept = std::make_unique<SharedSectors>(sectors);
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  auto* source = static_cast<IsoDataSource*>(std::calloc(1, sizeof(IsoDataSource)));
  if (source == nullptr) throw std::bad_alloc();
  source->refcount = 1;
  source->open = [](IsoDataSource*) { return 1; };
  source->close = [](IsoDataSource*) { return 1; };
  source->read_block = [](IsoDataSource* self, std::uint32_t block, std::uint8_t* target) {
    return (*static_cast<SharedSectors*>(self->data))->readBlock(block, target);
  };
  source->free_data = [](IsoDataSource* self) {
    std::unique_ptr<SharedSectors>(static_cast<SharedSectors*>(self->data));
  };
  source->data = kept.release();
  return std::unique_ptr<IsoDataSource, Unref>(source);
}

struct FreeOptions {
  void operator()(IsoReadOpts* options) const { iso_read_opts_free(options); }
};

std::unique_ptr<IsoReadOpts, FreeOptions> optionsFor(const DiscTrack& track) {
  IsoReadOpts* made = nullptr;
  isoChecked(iso_read_opts_new(&made, 0), "reading an image");
  std::unique_ptr<IsoReadOpts, FreeOptions> options(made);
  iso_read_opts_set_start_block(made, static_cast<std::uint32_t>(track.start));
  iso_read_opts_set_preferjoliet(made, 1);
  iso_read_opts_set_no_aaip(made, 1);
  iso_read_opts_set_no_md5(made, 1);
  return options;
}

}  // namespace

std::optional<FormerSession> FormerSession::on(std::shared_ptr<Recorder> recorder, const DiscState& disc) {
  const bool continued = disc.status == DiscOpen && !disc.tracks.empty() && disc.tracks.back().kind == DataBlocks;
  if (!continued) return std::nullopt;
  return FormerSession(std::move(recorder), disc);
}

bool FormerSession::liesOn(const DiscState& disc) const {
  return disc.id == disc_.id && disc.tracks.size() >= disc_.tracks.size() &&
         std::equal(disc_.tracks.begin(), disc_.tracks.end(), disc.tracks.begin(), sameTrack);
}

void FormerSession::importInto(IsoImage& image) const {
  const auto sectors = std::make_shared<DiscSectors>(recorder_, disc_.tracks);
  const auto source = sourceOf(sectors);
  const auto options = optionsFor(disc_.tracks.back());
  const int result = iso_image_import(&image, source.get(), options.get(), nullptr);
  sectors->requireNoFailure();
  if (result < 0) throw deviceError(sense::readError, std::string(notTakenOver) + iso_error_to_msg(result));
}

void FormerSession::requireReadable() const {
  importInto(*newIsoImage(""));
}

}  // namespace trackloom::engines::writer
