#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <utility>
#include <vector>

#include "controls/ListView.h"
#include "desktop/Entry.h"

namespace trackloom {

/// Shows the rows of a list without copying them, one step for each change it is told of; only rows added at the end
/// wait until grow(), so that many of them cost one step. Rows count from 0 here.
class ListModel final : public QAbstractTableModel {
 public:
  /// `icons` are the images of the list, from number 1 on.
  ListModel(ListView& list, Entry entry, QList<QIcon> icons, QObject* parent);

  /// Before the change, and after it.
  void announce(const ListChange& change);
  void mirror(const ListChange& change);
  bool showsAllRows() const { return list_ == nullptr || rows_ == list_->Count(); }
  void grow();
  /// The list is going: the model is empty from now on.
  void cut();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const std::string& cell(const QModelIndex& index) const;
  QVariant valueOf(const QModelIndex& index, int role) const;
  static QVariant headOf(const ListColumn& column, int role);
  /// Before and after a sort: what the views hold on to are rows, wherever they go.
  void noteItems();
  void followItems();

  ListView* list_;
  Entry entry_;
  QList<QIcon> icons_;
  int rows_;
  int columns_;
  std::vector<std::pair<QModelIndex, const ListItem*>> followed_;
};

}  // namespace trackloom
