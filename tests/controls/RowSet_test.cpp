#include "controls/RowSet.h"

#include <catch2/catch.hpp>

namespace trackloom {

using Rows = std::vector<int>;

TEST_CASE("A set of rows holds each row once, rising") {
  const RowSet set({5, 2, 5, 9});
  CHECK(set.rows() == Rows{2, 5, 9});
  CHECK(set.first() == 2);
  CHECK(set.contains(5));
  CHECK_FALSE(set.contains(3));
  CHECK(RowSet().first() == 0);
}

TEST_CASE("A row joins and leaves a set at its place") {
  RowSet set({2, 5});
  for (const int row : {9, 1, 3, 5}) set.add(row);
  CHECK(set.rows() == Rows{1, 2, 3, 5, 9});
  set.drop(1);
  set.drop(3);
  set.drop(4);
  CHECK(set.rows() == Rows{2, 5, 9});
}

TEST_CASE("The numbers of a set follow their rows when others come and go") {
  RowSet set({2, 5, 6});
  set.rowInserted(5);
  CHECK(set.rows() == Rows{2, 6, 7});
  set.rowInserted(1);
  CHECK(set.rows() == Rows{3, 7, 8});
  set.rowInserted(9);
  CHECK(set.rows() == Rows{3, 7, 8});
  set.rowRemoved(7);
  CHECK(set.rows() == Rows{3, 7});
  set.rowRemoved(1);
  CHECK(set.rows() == Rows{2, 6});
  set.rowRemoved(7);
  CHECK(set.rows() == Rows{2, 6});
}

}  // namespace trackloom
