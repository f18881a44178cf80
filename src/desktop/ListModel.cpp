#include "desktop/ListModel.h"

#include <QGuiApplication>
#include <QPalette>
#include <unordered_map>

#include "desktop/Answer.h"
#include "desktop/Shown.h"

namespace trackloom {

ListModel::ListModel(ListView& list, Entry entry, QList<QIcon> icons, QObject* parent)
    : QAbstractTableModel(parent),
      list_(&list),
      entry_(std::move(entry)),
      icons_(std::move(icons)),
      rows_(list.Count()),
      columns_(static_cast<int>(list.columns().size())) {}

void ListModel::announce(const ListChange& change) {
  const int row = change.row - 1;
  switch (change.kind) {
    case ListChange::Kind::Inserted:
      if (row < rows_) beginInsertRows({}, row, row);
      return;
    case ListChange::Kind::Removed:
      if (row < rows_) beginRemoveRows({}, row, row);
      return;
    case ListChange::Kind::Sorted:
      grow();
      emit layoutAboutToBeChanged();
      return noteItems();
    case ListChange::Kind::Reset:
    case ListChange::Kind::Columns:
      return beginResetModel();
    default:
      return;
  }
}

void ListModel::mirror(const ListChange& change) {
  const int row = change.row - 1;
  switch (change.kind) {
    case ListChange::Kind::Inserted:
      if (row >= rows_) return;
      ++rows_;
      return endInsertRows();
    case ListChange::Kind::Removed:
      if (row >= rows_) return;
      --rows_;
      return endRemoveRows();
    case ListChange::Kind::RowChanged:
      if (row < rows_) emit dataChanged(index(row, 0), index(row, columns_ - 1));
      return;
    case ListChange::Kind::Sorted:
      followItems();
      emit layoutChanged();
      return;
    case ListChange::Kind::Reset:
    case ListChange::Kind::Columns:
      rows_ = list_->Count();
      columns_ = static_cast<int>(list_->columns().size());
      return endResetModel();
    default:
      return;
  }
}

void ListModel::noteItems() {
  for (const QModelIndex& kept : persistentIndexList()) followed_.push_back({kept, &list_->Item(kept.row() + 1)});
}

void ListModel::followItems() {
  std::unordered_map<const ListItem*, int> places;
  for (int row = 0; row < rows_; ++row) places[&list_->Item(row + 1)] = row;
  for (const auto& [before, item] : std::exchange(followed_, {}))
    changePersistentIndex(before, index(places.at(item), before.column()));
}

void ListModel::grow() {
  if (showsAllRows()) return;
  beginInsertRows({}, rows_, list_->Count() - 1);
  rows_ = list_->Count();
  endInsertRows();
}

void ListModel::cut() {
  beginResetModel();
  list_ = nullptr;
  rows_ = 0;
  endResetModel();
}

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

const std::string& ListModel::cell(const QModelIndex& index) const {
  const int row = index.row() + 1;
  return index.column() == 0 ? list_->Item(row).Text : list_->SubItem(row, index.column());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  return answer(QVariant(), [&] { return valueOf(index, role); });
}

QVariant ListModel::valueOf(const QModelIndex& index, int role) const {
  if (list_ == nullptr || !checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const ListItem& item = list_->Item(index.row() + 1);
  const bool first = index.column() == 0;
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return shown(cell(index));
    case Qt::DecorationRole:
      return first ? QVariant(icons_.value(item.SmallIcon - 1)) : QVariant();
    case Qt::CheckStateRole:
      return first && list_->style().checkBoxes ? QVariant(item.Checked ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::ForegroundRole: {
      const QColor colour = shownColour(item.ForeColor, QGuiApplication::palette());
      return colour.isValid() ? QVariant(colour) : QVariant();
    }
    case Qt::TextAlignmentRole:
      return headerData(index.column(), Qt::Horizontal, role);
    default:
      return {};
  }
}

bool ListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (list_ == nullptr) return false;
  const int row = index.row() + 1;
  if (role == Qt::CheckStateRole)
    entry_([this, row, ticked = value.toInt() == Qt::Checked] { list_->check(row, ticked); });
  const bool edited = role == Qt::EditRole && list_->style().editable;
  if (edited) entry_([this, row, text = entered(value.toString())] { list_->edit(row, text); });
  return edited || role == Qt::CheckStateRole;
}

QVariant ListModel::headOf(const ListColumn& column, int role) {
  if (role == Qt::DisplayRole) return shown(column.text);
  if (role != Qt::TextAlignmentRole) return {};
  return QVariant::fromValue((column.rightAligned ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (list_ == nullptr || orientation != Qt::Horizontal) return {};
  return answer(QVariant(), [&] { return headOf(list_->columns().at(static_cast<std::size_t>(section)), role); });
}

Qt::ItemFlags ListModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
  if (list_ != nullptr && list_->style().checkBoxes && index.column() == 0) flags |= Qt::ItemIsUserCheckable;
  if (list_ != nullptr && list_->style().editable && index.column() == 0) flags |= Qt::ItemIsEditable;
  return flags;
}

}  // namespace trackloom
