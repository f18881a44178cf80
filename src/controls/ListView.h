#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/Control.h"
#include "controls/ListItem.h"

namespace trackloom {

/// A report list whose rows are the records themselves. Rows and columns count from 1; column 1 is the row's Text. A
/// number outside raises error 9. While sorted, a new row takes its place by its key, after its equals, ignoring case;
/// switching sorting off keeps the order, and changing a cell moves nothing.
class ListView final : public Control {
 public:
  ListView(Form& form, std::string name, std::vector<ListColumn> columns, bool checkBoxes = false);
  void accept(ControlVisitor& visitor) override;

  /// Told after each change of rows, columns or selection.
  Signal<const ListChange&> listChanged;

  const std::vector<ListColumn>& columns() const { return columns_; }
  void AddColumn(ListColumn column);
  void RemoveColumn(int column);
  void SetColumnWidth(int column, double twips);

  int Count() const { return static_cast<int>(rows_.size()); }
  const ListItem& Item(int row) const { return *at(row).item; }
  /// A sub-item beyond the columns raises error 9; one not yet set reads empty.
  const std::string& SubItem(int row, int index) const;
  /// A row of this Text exists, whatever its case.
  bool HasText(const std::string& text) const;
  /// The row that the item took.
  int Add(ListItem item);
  void Insert(int row, ListItem item);
  void Remove(int row);
  void Clear();
  void SetSubItem(int row, int index, std::string text);
  void SetForeColor(int row, Colour colour);
  void SetChecked(int row, bool checked);
  bool checkBoxes() const { return checkBoxes_; }
  int CheckedCount() const { return checked_; }

  /// 0: no row is selected.
  int SelectedRow() const { return selected_; }
  void SelectRow(int row);

  bool Sorted() const { return sorted_; }
  void SetSorted(bool sorted);
  int SortKey() const { return sortKey_; }
  /// 0 sorts by Text, n by SubItems(n).
  void SetSortKey(int key);

  /// The size of the list in twips, as its face reports it.
  Property<double> Width{changed, 0};
  Property<double> Height{changed, 0};

  std::function<void(int row)> ItemCheck;
  std::function<void()> DblClick;
  std::function<void(const std::vector<std::string>& paths)> FilesDropped;
  void check(int row, bool checked);
  void doubleClick(int row);
  void dropFiles(const std::vector<std::string>& paths);

 private:
  struct Row {
    std::unique_ptr<ListItem> item;
    std::string key;
  };

  const Row& at(int row) const;
  Row& at(int row);
  std::string keyOf(const ListItem& item) const;
  void resort();
  void tell(ListChange::Kind kind, int row = 0) { listChanged({kind, row}); }

  std::vector<ListColumn> columns_;
  std::vector<Row> rows_;
  /// How many rows bear an upper-cased Text.
  std::unordered_map<std::string, int> texts_;
  bool checkBoxes_;
  bool sorted_ = false;
  int sortKey_ = 0;
  int selected_ = 0;
  int checked_ = 0;
};

}  // namespace trackloom
