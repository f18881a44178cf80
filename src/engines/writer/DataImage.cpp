#include "engines/writer/DataImage.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include "engines/ground/Blocks.h"
#include "engines/writer/ImageNames.h"
#include "runtime/Text.h"

namespace trackloom::engines::writer {

namespace {

/// Zero blocks behind the files: a reader that reads ahead at the end of a track written by itself stumbles over the
/// two run-out blocks there, and then these are what it loses.
constexpr std::uint32_t tailBlocks = 150;
constexpr std::int64_t readAheadBytes = std::int64_t{4} << 20;
constexpr std::int64_t pieceBytes = std::int64_t{1} << 20;

struct FreeOptions {
  void operator()(IsoWriteOpts* options) const { iso_write_opts_free(options); }
};
using WriteOptions = std::unique_ptr<IsoWriteOpts, FreeOptions>;

struct Setting {
  int (*set)(IsoWriteOpts* options, int value);
  int value;
};

constexpr int inJolietOnly = 2;
constexpr int inBothTrees = 3;

/// What makes an image one that readers of today and of old read, with the dates and the order of its files.
constexpr std::array settings{
    Setting{iso_write_opts_set_iso_level, 3},
    Setting{iso_write_opts_set_joliet, 1},
    Setting{iso_write_opts_set_allow_deep_paths, 1},
    Setting{iso_write_opts_set_allow_longer_paths, 1},
    Setting{iso_write_opts_set_joliet_longer_paths, 1},
    Setting{iso_write_opts_set_omit_version_numbers, inJolietOnly},
    Setting{iso_write_opts_set_no_force_dots, inJolietOnly},
    Setting{iso_write_opts_set_relaxed_vol_atts, 1},
    Setting{iso_write_opts_set_dir_rec_mtime, inBothTrees},
    Setting{iso_write_opts_set_sort_files, 1},
    Setting{iso_write_opts_set_appendable, 1},
};

WriteOptions newOptions(std::uint32_t padding, std::int32_t start) {
  constexpr int plain = 0;
  IsoWriteOpts* made = nullptr;
  isoChecked(iso_write_opts_new(&made, plain), "making an image");
  WriteOptions options(made);
  for (const Setting& setting : settings) isoChecked(setting.set(made, setting.value), "making an image");
  iso_write_opts_set_output_charset(made, "UTF-8");
  iso_write_opts_set_fifo_size(made, readAheadBytes / dataSectorBytes);
  iso_write_opts_set_tail_blocks(made, padding);
  iso_write_opts_set_ms_block(made, static_cast<std::uint32_t>(start));
  return options;
}

/// Sorts like the path read aloud: a folder's content follows it, before any longer name.
std::string alphabetical(const DiscPath& path) {
  std::string key = UCase(path.text);
  std::ranges::replace(key, DiscSep, '\x01');
  return key;
}

void sortAlphabetically(std::vector<DataEntry>& entries) {
  std::vector<std::pair<std::string, DataEntry>> keyed;
  keyed.reserve(entries.size());
  for (DataEntry& entry : entries) keyed.emplace_back(alphabetical(entry.disc), std::move(entry));
  std::ranges::sort(keyed, [](const auto& one, const auto& other) {
    return std::tie(one.first, one.second.disc) < std::tie(other.first, other.second.disc);
  });
  std::ranges::transform(keyed, entries.begin(), [](auto& pair) { return std::move(pair.second); });
}

}  // namespace

void DataImage::EndOfSource::operator()(burn_source* source) const {
  source->cancel(source);
  source->free_data(source);
  // The library leaves the last step to its usual consumer, which is not in use here.
  std::free(source);  // NOLINT(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
}

DataImage::DataImage(std::vector<DataEntry> entries, const ImageTerms& terms, std::shared_ptr<SourcesInUse> inUse,
                     std::stop_token stop)
    : stop_(std::move(stop)), state_(std::move(inUse)) {
  image_ = newIsoImage("");
  if (terms.former) terms.former->importInto(*image_);
  iso_image_set_volume_id(image_.get(), volumeLabel(terms.label).c_str());
  iso_image_set_application_id(image_.get(), "TRACKLOOM");
  sortAlphabetically(entries);
  addTree(entries, terms.missing);
  openSource(terms);
}

DataImage::~DataImage() = default;

FileContent* DataImage::addContent(const std::shared_ptr<Source>& source, Missing missing) {
  std::error_code error;
  if (missing == Missing::LeftOut && !std::filesystem::exists(source->path().text, error) && !error) return nullptr;
  return &contents_.emplace_back(source, contents_.size(), state_);
}

void DataImage::addTree(const std::vector<DataEntry>& entries, Missing missing) {
  ImageFolders folders;
  for (const DataEntry& entry : entries) {
    FileContent* content = entry.folder ? nullptr : addContent(entry.source, missing);
    if (entry.folder || content != nullptr) folders[discFolder(entry.disc.text)].push_back({&entry, content});
  }
  growTree(*image_, folders);
}

void DataImage::openSource(const ImageTerms& terms) {
  openSourceWith(tailBlocks, terms.start);
  const std::int64_t excess = std::int64_t{blocks()} - terms.room;
  if (excess > 0 && excess <= tailBlocks) openSourceWith(tailBlocks - static_cast<std::uint32_t>(excess), terms.start);
}

void DataImage::openSourceWith(std::uint32_t padding, std::int32_t start) {
  source_.reset();
  const WriteOptions options = newOptions(padding, start);
  burn_source* source = nullptr;
  isoChecked(iso_image_create_burn_source(image_.get(), options.get(), &source), "making an image");
  source_.reset(source);
  bytes_ = source->get_size(source);
}

std::int32_t DataImage::blocks() const {
  return saturated(bytes_ / static_cast<std::int64_t>(dataSectorBytes));
}

std::size_t DataImage::bytesReady() const {
  std::size_t size{};
  std::size_t unused{};
  iso_ring_buffer_get_status(source_.get(), &size, &unused);
  return size - unused;
}

/// The library hands over 2 KiB at a time, and to take each at once would cost a change of threads apiece.
void DataImage::waitForBytes(std::size_t count) {
  for (;;) {
    if (stop_.stop_requested()) throw Stopped();
    if (bytesReady() >= count || iso_image_generator_is_running(image_.get()) == 0) return;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
}

Piece DataImage::fetchPiece(std::size_t most) {
  // The library drops the tail of an image where more than the rest is asked for.
  Piece piece(std::min(static_cast<std::size_t>(std::min<std::int64_t>(bytes_ - fetched_, pieceBytes)), most));
  waitForBytes(piece.size());
  const auto wanted = static_cast<int>(piece.size());
  const int count = source_->read_xt(source_.get(), reinterpret_cast<unsigned char*>(piece.data()), wanted);
  const std::string failure = state_.failure();
  if (!failure.empty()) throw EngineError(ErrorKind::File, 0, failure);
  if (count != wanted || wanted == 0) throw EngineError(ErrorKind::File, 0, "the image of the data disc ended early");
  fetched_ += count;
  return piece;
}

Piece DataImage::take(std::size_t most) {
  return handedOut_ == piece_.size() ? fetchPiece(most) : PieceSource::take(most);
}

void DataImage::read(std::span<std::byte> sectors) {
  while (!sectors.empty()) {
    if (handedOut_ == piece_.size()) {
      piece_ = fetchPiece(static_cast<std::size_t>(pieceBytes));
      handedOut_ = 0;
    }
    const std::size_t count = std::min(sectors.size(), piece_.size() - handedOut_);
    std::memcpy(sectors.data(), piece_.data() + handedOut_, count);
    handedOut_ += count;
    sectors = sectors.subspan(count);
  }
}

std::int16_t DataImage::bufferPercent() {
  const auto whole = static_cast<std::size_t>(std::min<std::int64_t>(bytes_ - fetched_, readAheadBytes));
  return static_cast<std::int16_t>(whole == 0 ? 100 : std::min<std::size_t>(100, bytesReady() * 100 / whole));
}

}  // namespace trackloom::engines::writer
