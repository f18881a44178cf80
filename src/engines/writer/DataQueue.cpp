#include "engines/writer/DataQueue.h"

#include <algorithm>
#include <map>
#include <utility>

#include "engines/ground/Blocks.h"

namespace trackloom::engines::writer {

namespace {

/// Far beyond the 8 levels of ISO 9660 (6.8.2.1) and still shallow enough for readers that walk a tree by recursion.
constexpr std::size_t deepestLevel = 255;

std::int64_t blocksOf(const Source& source) {
  const auto sector = static_cast<std::int64_t>(dataSectorBytes);
  return source.note().size / sector + (source.note().size % sector != 0 ? 1 : 0);
}

std::size_t levelsOf(const std::string& discPath) {
  std::size_t levels = 0;
  for (std::string path = discPath; !path.empty() && levels <= deepestLevel; path = discFolder(path)) ++levels;
  return levels;
}

/// The same path from the root on, with one separator wherever several stand.
std::string placeOf(const std::string& discPath) {
  std::string path = DiscSep + discPath;
  const auto doubled = [](char one, char other) { return one == DiscSep && other == DiscSep; };
  path.erase(std::unique(path.begin(), path.end(), doubled), path.end());
  return path;
}

}  // namespace

std::string discFolder(const std::string& discPath) {
  std::size_t length = discPath.rfind(DiscSep);
  if (length == std::string::npos) return "";
  while (length > 0 && discPath[length - 1] == DiscSep) --length;
  return discPath.substr(0, length);
}

std::string discName(const std::string& discPath) {
  return discPath.substr(discPath.rfind(DiscSep) + 1);
}

std::shared_ptr<Source> readableSource(const HostPath& path) {
  try {
    return std::make_shared<Source>(path, SourceFile(path).note());
  } catch (const EngineError&) {
    return nullptr;
  }
}

void DataQueue::clear() {
  *this = {};
}

bool DataQueue::add(const DiscPath& disc, const std::shared_ptr<Source>& source) {
  if (!source || levelsOf(disc.text) > deepestLevel) return false;
  const auto found = items_.find(disc.text);
  if (found != items_.end()) {
    Item& item = found->second;
    if (item.folder) return false;
    blocks_ += blocksOf(*source) - item.blocks;
    item.source = source;
    item.turn = ++turns_;
    item.blocks = blocksOf(*source);
    return true;
  }
  const std::string folder = discFolder(disc.text);
  if (!makeFolders(folder)) return false;
  if (!folder.empty()) ++items_[folder].children;
  items_[disc.text] = Item{.source = source, .blocks = blocksOf(*source), .turn = ++turns_};
  blocks_ += blocksOf(*source);
  ++files_;
  return true;
}

bool DataQueue::makeFolders(const std::string& folder) {
  std::vector<std::string> missing;
  for (std::string path = folder; !path.empty(); path = discFolder(path)) {
    const auto found = items_.find(path);
    if (found == items_.end()) {
      missing.push_back(path);
      continue;
    }
    if (!found->second.folder) return false;
    break;
  }
  for (const std::string& path : missing) {
    items_[path].folder = true;
    const std::string parent = discFolder(path);
    if (!parent.empty()) ++items_[parent].children;
  }
  return true;
}

bool DataQueue::remove(const DiscPath& disc) {
  const auto found = items_.find(disc.text);
  if (found == items_.end() || found->second.children != 0) return false;
  blocks_ -= found->second.blocks;
  if (!found->second.folder) --files_;
  items_.erase(found);
  const std::string folder = discFolder(disc.text);
  if (!folder.empty()) --items_[folder].children;
  return true;
}

std::int32_t DataQueue::blocks() const {
  return saturated(blocks_);
}

std::vector<DataEntry> DataQueue::entries() const {
  std::map<std::pair<std::string, bool>, const Item*> places;
  for (const auto& [path, item] : items_) {
    const Item*& standing = places[{placeOf(path), item.folder}];
    if (standing == nullptr || standing->turn < item.turn) standing = &item;
  }
  std::vector<DataEntry> entries;
  entries.reserve(places.size());
  for (const auto& [place, item] : places) entries.push_back({DiscPath(place.first), item->source, place.second});
  return entries;
}

}  // namespace trackloom::engines::writer
