#include "controls/RowSet.h"

#include <algorithm>
#include <utility>

namespace trackloom {

RowSet::RowSet(std::vector<int> rows) : rows_(std::move(rows)) {
  std::sort(rows_.begin(), rows_.end());
  rows_.erase(std::unique(rows_.begin(), rows_.end()), rows_.end());
}

bool RowSet::contains(int row) const {
  return std::binary_search(rows_.begin(), rows_.end(), row);
}

void RowSet::add(int row) {
  const auto place = std::lower_bound(rows_.begin(), rows_.end(), row);
  if (place == rows_.end() || *place != row) rows_.insert(place, row);
}

void RowSet::drop(int row) {
  std::erase(rows_, row);
}

void RowSet::rowInserted(int row) {
  for (auto later = std::lower_bound(rows_.begin(), rows_.end(), row); later != rows_.end(); ++later) ++*later;
}

void RowSet::rowRemoved(int row) {
  drop(row);
  for (auto later = std::lower_bound(rows_.begin(), rows_.end(), row); later != rows_.end(); ++later) --*later;
}

}  // namespace trackloom
