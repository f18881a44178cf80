#include "desktop/ShelfList.h"

#include <QDateTime>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

#include "desktop/Make.h"
#include "desktop/PanelWords.h"
#include "desktop/Shown.h"

namespace trackloom {

namespace {

enum Column { NameColumn, MediumColumn, SizeColumn, AgeColumn, StateColumn };

/// The host's bytes, which what is shown may not have.
constexpr int NameRole = Qt::UserRole;

std::string nameOf(const QTreeWidgetItem& item) {
  return item.data(NameColumn, NameRole).toByteArray().toStdString();
}

/// The box for a name. What the user types is asked for, and the list shows it once the disc has it.
class NameBox final : public QStyledItemDelegate {
 public:
  using Take = std::function<void(const QModelIndex& index, const QString& name)>;

  NameBox(const std::optional<QString>& typed, Take take, QObject* owner)
      : QStyledItemDelegate(owner), typed_(typed), take_(std::move(take)) {}

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                        const QModelIndex& /*index*/) const override {
    auto& line = make<QLineEdit>(*parent);
    line.setAccessibleName("Name of the disc");
    return &line;
  }
  void setEditorData(QWidget* editor, const QModelIndex& index) const override {
    auto& line = dynamic_cast<QLineEdit&>(*editor);
    line.setText(typed_ ? *typed_ : index.data().toString());
    line.selectAll();
  }
  void setModelData(QWidget* editor, QAbstractItemModel* /*model*/, const QModelIndex& index) const override {
    take_(index, dynamic_cast<QLineEdit&>(*editor).text());
  }

 private:
  const std::optional<QString>& typed_;
  Take take_;
};

QString asToolTip(const QString& plain) {
  return plain.isEmpty() ? QString() : "<qt>" + plain.toHtmlEscaped() + "</qt>";
}

void fill(QTreeWidgetItem& item, const ShelfDisc& disc, std::int64_t now) {
  const QString name = shown(disc.name);
  item.setText(NameColumn, name);
  item.setText(MediumColumn, mediumText(disc));
  item.setText(SizeColumn, contentText(disc));
  item.setText(AgeColumn, ageText(disc.changed, now));
  item.setText(StateColumn, stateText(disc));
  item.setToolTip(NameColumn, asToolTip(name));
  item.setToolTip(AgeColumn, QLocale::c().toString(QDateTime::fromSecsSinceEpoch(disc.changed), "yyyy-MM-dd hh:mm"));
  item.setToolTip(StateColumn, asToolTip(shown(disc.trouble)));
}

}  // namespace

ShelfList::ShelfList(QWidget* parent) : QTreeWidget(parent), icon_(rowIconNamed("Disc")) {
  setAccessibleName("Discs on the shelf");
  setHeaderLabels({"Name", "Medium", "Size", "Age", "State"});
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setEditTriggers(NoEditTriggers);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
  const auto take = [this](const QModelIndex& index, const QString& name) {
    if (name != index.data().toString()) renameWanted(nameOf(*itemFromIndex(index)), name);
  };
  setItemDelegateForColumn(NameColumn, &make<NameBox>(*this, typed_, take));
  connect(this, &QTreeWidget::itemDoubleClicked, [this] { insertWanted(); });
}

void ShelfList::show(const std::vector<ShelfDisc>& discs, std::int64_t now) {
  int row = 0;
  for (const ShelfDisc& disc : discs) {
    while (row < topLevelItemCount() && nameOf(*topLevelItem(row)) < disc.name) removeRow(row);
    if (row == topLevelItemCount() || nameOf(*topLevelItem(row)) != disc.name) insertRow(row, disc.name);
    fill(*topLevelItem(row++), disc, now);
  }
  while (row < topLevelItemCount()) removeRow(row);
  if (currentItem() == nullptr && row > 0) setCurrentItem(topLevelItem(0));
}

void ShelfList::insertRow(int row, const std::string& disc) {
  auto item = std::make_unique<QTreeWidgetItem>();
  item->setData(NameColumn, NameRole, QByteArray::fromStdString(disc));
  item->setIcon(NameColumn, icon_);
  item->setFlags(item->flags() | Qt::ItemIsEditable);
  insertTopLevelItem(row, item.release());
}

void ShelfList::removeRow(int row) {
  const std::unique_ptr<QTreeWidgetItem> gone(takeTopLevelItem(row));
}

QTreeWidgetItem* ShelfList::itemOf(const std::string& disc) const {
  for (int row = 0; row < topLevelItemCount(); ++row)
    if (nameOf(*topLevelItem(row)) == disc) return topLevelItem(row);
  return nullptr;
}

std::optional<std::string> ShelfList::chosen() const {
  const QTreeWidgetItem* item = currentItem();
  return item == nullptr || !item->isSelected() ? std::nullopt : std::optional(nameOf(*item));
}

void ShelfList::choose(const std::string& disc) {
  setCurrentItem(itemOf(disc));
}

void ShelfList::editName() {
  if (chosen()) editItem(currentItem(), NameColumn);
}

void ShelfList::editName(const QString& typed) {
  typed_ = typed;
  editName();
  typed_.reset();
}

void ShelfList::keyPressEvent(QKeyEvent* event) {
  // The Enter that ends a name comes here too.
  if (state() == EditingState) return event->accept();
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return insertWanted();
    case Qt::Key_Delete:
      return deleteWanted();
    case Qt::Key_F2:
      return editName();
    default:
      return QTreeWidget::keyPressEvent(event);
  }
}

}  // namespace trackloom
