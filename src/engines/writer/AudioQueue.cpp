#include "engines/writer/AudioQueue.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "engines/ground/Blocks.h"

namespace trackloom::engines::writer {

void AudioQueue::clear() {
  *this = {};
}

void AudioQueue::add(AudioEntry entry) {
  blocks_ += entry.blocks;
  entries_.push_back(std::move(entry));
  places_[entries_.back().number].push_back(std::prev(entries_.end()));
}

bool AudioQueue::remove(std::int16_t number) {
  const auto found = places_.find(number);
  if (found == places_.end()) return false;
  const Place place = found->second.front();
  found->second.pop_front();
  if (found->second.empty()) places_.erase(found);
  blocks_ -= place->blocks;
  entries_.erase(place);
  return true;
}

std::int32_t AudioQueue::blocks() const {
  return saturated(blocks_);
}

std::vector<std::shared_ptr<Source>> AudioQueue::discOrder() const {
  std::vector<const AudioEntry*> order;
  order.reserve(entries_.size());
  for (const AudioEntry& entry : entries_) order.push_back(&entry);
  std::ranges::stable_sort(order, {}, &AudioEntry::number);
  std::vector<std::shared_ptr<Source>> sources;
  sources.reserve(order.size());
  for (const AudioEntry* entry : order) sources.push_back(entry->source);
  return sources;
}

}  // namespace trackloom::engines::writer
