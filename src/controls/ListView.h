#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/Control.h"
#include "controls/ListItem.h"
#include "controls/RowSet.h"

namespace trackloom {

class ImageList;

/// A report list whose rows are the records themselves. Rows and columns count from 1; column 1 is the row's Text. A
/// number outside raises error 9. While sorted, a new row takes its place by its key, after its equals, ignoring case;
/// switching sorting off keeps the order, and changing a cell moves nothing. When the selected row is removed, the next
/// one is selected, or the last.
class ListView final : public Control {
 public:
  ListView(Form& form, std::string name, std::vector<ListColumn> columns, ListStyle style = {});
  void accept(ControlVisitor& visitor) override;

  /// Told before rows or columns come, go or move, while all is still as it was.
  Signal<const ListChange&> listChanging;
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
  const ListStyle& style() const { return style_; }
  /// What SmallIcon counts in; without one, image 1 is what the face has for the rows of this list.
  const ImageList* SmallIcons = nullptr;
  int CheckedCount() const { return checked_; }

  /// The first of the selected rows; 0: none is.
  int SelectedRow() const { return selected_.first(); }
  /// Makes the row the only one selected; 0 leaves none.
  void SelectRow(int row);
  const std::vector<int>& SelectedRows() const { return selected_.rows(); }
  bool Selected(int row) const;
  /// Where one row at most can be selected, the others lose it.
  void SetSelected(int row, bool selected);

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
  /// Gives the row another Text; it stays where it is.
  void edit(int row, std::string text);
  /// Where one row at most can be selected, the first of them counts.
  void select(std::vector<int> rows);
  void doubleClick(int row);
  void dropFiles(const std::vector<std::string>& paths);

  // Dragging rows within the list. Heights are twips of a list whose head and rows are as high as DragRowHeight,
  // whatever the font: the head is 0 and up, the first visible row DragRowHeight and up.
  static constexpr double DragRowHeight = 245;
  std::function<void(MouseButton)> MouseDown;
  std::function<void(double y)> DragOver;
  std::function<void(double y)> DragDrop;
  /// Begins a drag of the list onto itself; for MouseDown.
  void Drag() { drag_ = DragState::Begun; }
  bool dragging() const { return drag_ != DragState::None; }
  /// Scrolls by pixels, rounded to whole rows.
  void ScrollBy(int right, int down) { scrollRequested(right, down); }
  Signal<int, int> scrollRequested;
  int FirstVisibleRow() const { return firstVisibleRow_; }
  double DragHeight() const { return dragHeight_; }

  void press(MouseButton button);
  /// The user moves the selected row down by so many rows, or up by minus so many; for lists whose rows are dragged.
  std::function<void(int rows)> RowMoved;
  void moveSelected(int rows);
  void dragOver(double y);
  /// A drag that never went over the list was a mere click and drops nothing.
  void drop(double y);
  void endDragElsewhere() { drag_ = DragState::None; }
  /// Which row is the first that is seen, and how high head and seen rows are together.
  void reportView(int firstVisibleRow, double dragHeight);

 private:
  enum class DragState { None, Begun, Over };
  struct Row {
    std::unique_ptr<ListItem> item;
    std::string key;
  };

  const Row& at(int row) const;
  Row& at(int row);
  std::string keyOf(const ListItem& item) const;
  void resort();
  void setSelection(RowSet rows);
  void forgetText(const std::string& text);
  /// Changes the rows or columns between the announcement and the news of it.
  template <class Deed>
  void change(ListChange::Kind kind, int row, const Deed& deed);
  void tell(ListChange::Kind kind, int row) { listChanged({kind, row}); }

  std::vector<ListColumn> columns_;
  std::vector<Row> rows_;
  /// How many rows bear an upper-cased Text.
  std::unordered_map<std::string, int> texts_;
  ListStyle style_;
  bool sorted_ = false;
  int sortKey_ = 0;
  RowSet selected_;
  int checked_ = 0;
  DragState drag_ = DragState::None;
  int firstVisibleRow_ = 1;
  double dragHeight_ = 0;
};

}  // namespace trackloom
