#include "controls/ListView.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "controls/ControlVisitor.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"

namespace trackloom {

ListView::ListView(Form& form, std::string name, std::vector<ListColumn> columns, ListStyle style)
    : Control(form, std::move(name)), columns_(std::move(columns)), style_(style) {}

void ListView::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

template <class Deed>
void ListView::change(ListChange::Kind kind, int row, const Deed& deed) {
  listChanging({kind, row});
  deed();
  tell(kind, row);
}

void ListView::AddColumn(ListColumn column) {
  change(ListChange::Kind::Columns, 0, [&] { columns_.push_back(std::move(column)); });
}

void ListView::RemoveColumn(int column) {
  if (column < 1 || column > static_cast<int>(columns_.size())) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  change(ListChange::Kind::Columns, 0, [&] { columns_.erase(columns_.begin() + (column - 1)); });
}

void ListView::SetColumnWidth(int column, double twips) {
  if (column < 1 || column > static_cast<int>(columns_.size())) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  double& width = columns_[static_cast<std::size_t>(column - 1)].width;
  if (std::abs(width - twips) < 0.5) return;
  width = twips;
  tell(ListChange::Kind::Width, 0);
}

const ListView::Row& ListView::at(int row) const {
  if (row < 1 || row > Count()) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  return rows_[static_cast<std::size_t>(row - 1)];
}

ListView::Row& ListView::at(int row) {
  return const_cast<Row&>(std::as_const(*this).at(row));
}

const std::string& ListView::SubItem(int row, int index) const {
  const ListItem& item = Item(row);
  if (index < 1 || index >= static_cast<int>(columns_.size())) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  static const std::string unset;
  const auto position = static_cast<std::size_t>(index - 1);
  return position < item.SubItems.size() ? item.SubItems[position] : unset;
}

std::string ListView::keyOf(const ListItem& item) const {
  if (sortKey_ <= 0) return UCase(item.Text);
  const auto position = static_cast<std::size_t>(sortKey_ - 1);
  return position < item.SubItems.size() ? UCase(item.SubItems[position]) : std::string();
}

bool ListView::HasText(const std::string& text) const {
  return texts_.contains(UCase(text));
}

int ListView::Add(ListItem item) {
  if (!sorted_) {
    Insert(Count() + 1, std::move(item));
    return Count();
  }
  const auto place = std::upper_bound(rows_.begin(), rows_.end(), keyOf(item),
                                      [](const std::string& key, const Row& row) { return key < row.key; });
  const int row = static_cast<int>(place - rows_.begin()) + 1;
  Insert(row, std::move(item));
  return row;
}

void ListView::Insert(int row, ListItem item) {
  if (row < 1 || row > Count() + 1) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  Row added;
  if (sorted_) added.key = keyOf(item);
  added.item = std::make_unique<ListItem>(std::move(item));
  change(ListChange::Kind::Inserted, row, [&] {
    if (added.item->Checked) ++checked_;
    ++texts_[UCase(added.item->Text)];
    rows_.insert(rows_.begin() + (row - 1), std::move(added));
    selected_.rowInserted(row);
  });
}

void ListView::Remove(int row) {
  const ListItem& item = Item(row);
  change(ListChange::Kind::Removed, row, [&] {
    if (item.Checked) --checked_;
    forgetText(item.Text);
    rows_.erase(rows_.begin() + (row - 1));
    const bool wasSelected = selected_.contains(row);
    selected_.rowRemoved(row);
    if (wasSelected && selected_.first() == 0 && Count() > 0) selected_.add(std::min(row, Count()));
  });
}

void ListView::forgetText(const std::string& text) {
  const auto bearers = texts_.find(UCase(text));
  if (--bearers->second == 0) texts_.erase(bearers);
}

void ListView::Clear() {
  change(ListChange::Kind::Reset, 0, [this] {
    rows_.clear();
    texts_.clear();
    selected_ = {};
    checked_ = 0;
  });
}

void ListView::SetSubItem(int row, int index, std::string text) {
  if (index < 1 || index >= static_cast<int>(columns_.size())) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  auto& cells = at(row).item->SubItems;
  cells.resize(std::max(cells.size(), static_cast<std::size_t>(index)));
  cells[static_cast<std::size_t>(index - 1)] = std::move(text);
  tell(ListChange::Kind::RowChanged, row);
}

void ListView::SetForeColor(int row, Colour colour) {
  at(row).item->ForeColor = colour;
  tell(ListChange::Kind::RowChanged, row);
}

void ListView::SetChecked(int row, bool checked) {
  bool& now = at(row).item->Checked;
  if (now == checked) return;
  now = checked;
  checked_ += checked ? 1 : -1;
  tell(ListChange::Kind::RowChanged, row);
}

void ListView::SelectRow(int row) {
  if (row < 0 || row > Count()) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  setSelection(row == 0 ? RowSet() : RowSet({row}));
}

bool ListView::Selected(int row) const {
  at(row);
  return selected_.contains(row);
}

void ListView::SetSelected(int row, bool selected) {
  at(row);
  RowSet rows = style_.multiSelect || !selected ? selected_ : RowSet();
  selected ? rows.add(row) : rows.drop(row);
  setSelection(std::move(rows));
}

void ListView::setSelection(RowSet rows) {
  if (rows == selected_) return;
  selected_ = std::move(rows);
  tell(ListChange::Kind::Selection, selected_.first());
}

void ListView::SetSorted(bool sorted) {
  sorted_ = sorted;
  if (sorted) resort();
}

void ListView::SetSortKey(int key) {
  sortKey_ = key;
  if (sorted_) resort();
}

void ListView::resort() {
  std::unordered_set<const ListItem*> selected;
  for (const int row : selected_.rows()) selected.insert(at(row).item.get());
  change(ListChange::Kind::Sorted, 0, [&] {
    for (Row& row : rows_) row.key = keyOf(*row.item);
    std::stable_sort(rows_.begin(), rows_.end(), [](const Row& a, const Row& b) { return a.key < b.key; });
    selected_ = {};
    for (int row = 1; !selected.empty() && row <= Count(); ++row)
      if (selected.erase(at(row).item.get()) != 0) selected_.add(row);
  });
}

void ListView::check(int row, bool checked) {
  if (!usable() || !style_.checkBoxes || at(row).item->Checked == checked) return;
  SetChecked(row, checked);
  raise([this, row] {
    if (ItemCheck) ItemCheck(row);
  });
}

void ListView::edit(int row, std::string text) {
  // An edit that was begun ends well, also where a modal form has come over it.
  if (!Enabled || !Visible || !style_.editable) return;
  ListItem& item = *at(row).item;
  forgetText(item.Text);
  item.Text = std::move(text);
  ++texts_[UCase(item.Text)];
  tell(ListChange::Kind::RowChanged, row);
}

void ListView::select(std::vector<int> rows) {
  if (!usable()) return;
  for (const int row : rows) at(row);
  RowSet chosen(std::move(rows));
  setSelection(style_.multiSelect || chosen.first() == 0 ? std::move(chosen) : RowSet({chosen.first()}));
}

void ListView::doubleClick(int row) {
  if (!usable()) return;
  SelectRow(row);
  raise(DblClick);
}

void ListView::dropFiles(const std::vector<std::string>& paths) {
  if (!usable() || paths.empty()) return;
  raise([&] {
    if (FilesDropped) FilesDropped(paths);
  });
}

void ListView::press(MouseButton button) {
  if (!usable()) return;
  raise([this, button] {
    if (MouseDown) MouseDown(button);
  });
}

void ListView::moveSelected(int rows) {
  if (!usable() || dragging()) return;
  raise([this, rows] {
    if (RowMoved) RowMoved(rows);
  });
}

void ListView::dragOver(double y) {
  if (!usable() || !dragging()) return;
  drag_ = DragState::Over;
  raise([this, y] {
    if (DragOver) DragOver(y);
  });
}

void ListView::drop(double y) {
  if (std::exchange(drag_, DragState::None) != DragState::Over || !usable()) return;
  raise([this, y] {
    if (DragDrop) DragDrop(y);
  });
}

void ListView::reportView(int firstVisibleRow, double dragHeight) {
  firstVisibleRow_ = firstVisibleRow;
  dragHeight_ = dragHeight;
}

}  // namespace trackloom
