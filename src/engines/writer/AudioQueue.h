#pragma once

#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <unordered_map>
#include <vector>

#include "engines/ground/Source.h"

namespace trackloom::engines::writer {

/// A queued track with the number that its owner gave it and its length in blocks.
struct AudioEntry {
  std::shared_ptr<Source> source;
  std::int16_t number = 0;
  std::int32_t blocks = 0;
};

/// The tracks of an audio disc in the order they were queued. Numbers may repeat and have gaps; removing one leaves the
/// others as they are.
class AudioQueue {
 public:
  void clear();
  void add(AudioEntry entry);
  /// Removes the first entry of that number; False: there is none.
  bool remove(std::int16_t number);

  bool empty() const { return entries_.empty(); }
  /// The sum of all lengths, without gaps between tracks.
  std::int32_t blocks() const;
  /// A copy, so that whoever walks it may change the queue meanwhile.
  std::vector<AudioEntry> entries() const { return {entries_.begin(), entries_.end()}; }
  /// The files in the order of a disc: by number, equal numbers as they were queued.
  std::vector<std::shared_ptr<Source>> discOrder() const;

 private:
  using Place = std::list<AudioEntry>::iterator;

  std::list<AudioEntry> entries_;
  std::unordered_map<std::int16_t, std::deque<Place>> places_;
  std::int64_t blocks_ = 0;
};

}  // namespace trackloom::engines::writer
