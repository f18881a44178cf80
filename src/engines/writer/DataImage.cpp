#include "engines/writer/DataImage.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <numeric>
#include <system_error>
#include <thread>
#include <tuple>
#include <unordered_map>
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

struct UnrefStream {
  void operator()(IsoStream* stream) const { iso_stream_unref(stream); }
};

WriteOptions newOptions(std::uint32_t padding) {
  constexpr int plain = 0;
  IsoWriteOpts* made = nullptr;
  isoChecked(iso_write_opts_new(&made, plain), "making an image");
  WriteOptions options(made);
  iso_write_opts_set_iso_level(made, 3);
  iso_write_opts_set_joliet(made, 1);
  iso_write_opts_set_allow_deep_paths(made, 1);
  iso_write_opts_set_allow_longer_paths(made, 1);
  iso_write_opts_set_joliet_longer_paths(made, 1);
  constexpr int inJolietOnly = 2;
  iso_write_opts_set_omit_version_numbers(made, inJolietOnly);
  iso_write_opts_set_no_force_dots(made, inJolietOnly);
  iso_write_opts_set_relaxed_vol_atts(made, 1);
  constexpr int inBothTrees = 3;
  iso_write_opts_set_dir_rec_mtime(made, inBothTrees);
  iso_write_opts_set_sort_files(made, 1);
  iso_write_opts_set_output_charset(made, "UTF-8");
  iso_write_opts_set_fifo_size(made, readAheadBytes / dataSectorBytes);
  iso_write_opts_set_tail_blocks(made, padding);
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
  ensureIsoLibrary();
  IsoImage* image = nullptr;
  isoChecked(iso_image_new(volumeLabel(terms.label).c_str(), &image), "making an image");
  image_.reset(image);
  iso_image_set_application_id(image, "TRACKLOOM");
  sortAlphabetically(entries);
  addTree(entries, terms.missing);
  openSource(terms.room);
}

DataImage::~DataImage() {
  state_.cancelled = true;
}

FileContent* DataImage::addContent(const std::shared_ptr<Source>& source, Missing missing) {
  std::error_code error;
  if (missing == Missing::LeftOut && !std::filesystem::exists(source->path().text, error) && !error) return nullptr;
  return &contents_.emplace_back(source, contents_.size(), state_);
}

void DataImage::addTree(const std::vector<DataEntry>& entries, Missing missing) {
  std::unordered_map<std::string, std::vector<Child>> folders;
  for (const DataEntry& entry : entries) {
    FileContent* content = entry.folder ? nullptr : addContent(entry.source, missing);
    if (entry.folder || content != nullptr) folders[discFolder(entry.disc.text)].push_back({&entry, content});
  }
  std::vector<std::pair<std::string, IsoDir*>> open{{"", iso_image_get_root(image_.get())}};
  while (!open.empty()) {
    const auto [path, directory] = std::move(open.back());
    open.pop_back();
    const std::vector<Child>& children = folders[path];
    std::vector<WishedName> wished;
    wished.reserve(children.size());
    for (const Child& child : children) wished.push_back({discName(child.entry->disc.text), child.entry->folder});
    const std::vector<std::string> names = imageNames(wished);
    std::vector<std::size_t> order(children.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    // The library keeps a sorted list, whose front is found at once.
    std::ranges::sort(order, [&](std::size_t one, std::size_t other) { return names[one] > names[other]; });
    for (const std::size_t at : order) {
      const Child& child = children[at];
      if (child.content != nullptr)
        addFile(directory, names[at], *child.content);
      else
        open.emplace_back(child.entry->disc.text, addFolder(directory, names[at]));
    }
  }
}

IsoDir* DataImage::addFolder(IsoDir* parent, const std::string& name) {
  IsoDir* folder = nullptr;
  isoChecked(iso_image_add_new_dir(image_.get(), parent, name.c_str(), &folder), "adding the folder " + name);
  return folder;
}

void DataImage::addFile(IsoDir* parent, const std::string& name, FileContent& content) {
  std::unique_ptr<IsoStream, UnrefStream> stream(content.newStream());
  IsoFile* file = nullptr;
  isoChecked(iso_image_add_new_file(image_.get(), parent, name.c_str(), stream.get(), &file), "adding " + name);
  static_cast<void>(stream.release());
  auto* node = reinterpret_cast<IsoNode*>(file);
  iso_node_set_mtime(node, content.modified());
  iso_node_set_sort_weight(node,
                           std::numeric_limits<int>::max() - saturated(static_cast<std::int64_t>(content.index())));
}

void DataImage::openSource(std::int32_t room) {
  openSourceWith(tailBlocks);
  const std::int64_t excess = std::int64_t{blocks()} - room;
  if (excess > 0 && excess <= tailBlocks) openSourceWith(tailBlocks - static_cast<std::uint32_t>(excess));
}

void DataImage::openSourceWith(std::uint32_t padding) {
  source_.reset();
  const WriteOptions options = newOptions(padding);
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
  while (bytesReady() < count && iso_image_generator_is_running(image_.get()) != 0) {
    if (stop_.stop_requested()) throw Stopped();
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
}

void DataImage::fetchPiece() {
  // The library drops the tail of an image where more than the rest is asked for.
  piece_.resize(static_cast<std::size_t>(std::min<std::int64_t>(bytes_ - fetched_, pieceBytes)));
  handedOut_ = 0;
  waitForBytes(piece_.size());
  const auto wanted = static_cast<int>(piece_.size());
  const int count = source_->read_xt(source_.get(), reinterpret_cast<unsigned char*>(piece_.data()), wanted);
  const std::string failure = state_.failure();
  if (!failure.empty()) throw EngineError(ErrorKind::File, 0, failure);
  if (count != wanted || wanted == 0) throw EngineError(ErrorKind::File, 0, "the image of the data disc ended early");
  fetched_ += count;
}

void DataImage::read(std::span<std::byte> sectors) {
  while (!sectors.empty()) {
    if (handedOut_ == piece_.size()) fetchPiece();
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
