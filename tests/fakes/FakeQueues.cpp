#include "fakes/FakeQueues.h"

#include <algorithm>

namespace trackloom::fakes {

const std::vector<FakeAudioQueue::Entry>& FakeAudioQueue::entries() const {
  return entries_;
}

bool FakeAudioQueue::empty() const {
  return entries_.empty();
}

std::size_t FakeAudioQueue::size() const {
  return entries_.size();
}

const FakeAudioQueue::Entry& FakeAudioQueue::at(std::size_t place) const {
  return entries_.at(place);
}

void FakeAudioQueue::clear() {
  entries_.clear();
}

void FakeAudioQueue::add(Entry entry) {
  entries_.push_back(std::move(entry));
}

const std::map<std::string, FakeDataQueue::Entry>& FakeDataQueue::entries() const {
  return entries_;
}

bool FakeDataQueue::contains(const std::string& path) const {
  return entries_.contains(path);
}

void FakeDataQueue::clear() {
  entries_.clear();
}

std::vector<FakeAudioQueue::Entry> FakeAudioQueue::discOrder() const {
  std::vector<Entry> ordered = entries_;
  std::stable_sort(ordered.begin(), ordered.end(), [](const Entry& a, const Entry& b) { return a.number < b.number; });
  return ordered;
}

std::int32_t FakeAudioQueue::blocks() const {
  std::int32_t sum = 0;
  for (const Entry& entry : entries_) sum += entry.blocks;
  return sum;
}

bool FakeAudioQueue::remove(std::int16_t number) {
  const auto entry =
      std::find_if(entries_.begin(), entries_.end(), [&](const Entry& other) { return other.number == number; });
  if (entry == entries_.end()) return false;
  entries_.erase(entry);
  return true;
}

std::int32_t FakeDataQueue::blocks() const {
  std::int32_t sum = 0;
  for (const auto& [path, entry] : entries_) sum += entry.blocks;
  return sum;
}

std::vector<FakeDataQueue::Entry> FakeDataQueue::files() const {
  std::vector<Entry> files;
  for (const auto& [path, entry] : entries_)
    if (!entry.folder) files.push_back(entry);
  return files;
}

void FakeDataQueue::add(const std::string& path, Entry file) {
  for (std::size_t separator = path.find('\\', 1); separator != std::string::npos;
       separator = path.find('\\', separator + 1))
    if (path[separator - 1] != '\\') entries_.try_emplace(path.substr(0, separator), Entry{"", 0, true});
  entries_[path] = std::move(file);
}

bool FakeDataQueue::remove(const std::string& path) {
  const auto entry = entries_.find(path);
  if (entry == entries_.end() || (entry->second.folder && !empty(path))) return false;
  entries_.erase(entry);
  return true;
}

bool FakeDataQueue::empty(const std::string& folder) const {
  const auto next = entries_.lower_bound(folder + "\\");
  return next == entries_.end() || !next->first.starts_with(folder + "\\");
}

}  // namespace trackloom::fakes
