#pragma once

#include <vector>

namespace trackloom {

/// A set of a list's rows. Each number goes on meaning the same row while others come and go.
class RowSet {
 public:
  RowSet() = default;
  /// In any order, each as often as one likes.
  explicit RowSet(std::vector<int> rows);

  bool contains(int row) const;
  /// Rising.
  const std::vector<int>& rows() const { return rows_; }
  /// 0: the set is empty.
  int first() const { return rows_.empty() ? 0 : rows_.front(); }

  void add(int row);
  void drop(int row);
  void rowInserted(int row);
  void rowRemoved(int row);

  bool operator==(const RowSet&) const = default;

 private:
  std::vector<int> rows_;
};

}  // namespace trackloom
