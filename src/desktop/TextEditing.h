#pragma once

#include <QLineEdit>
#include <QStyledItemDelegate>

namespace trackloom {

/// Edits the texts of a list. What the user has typed stays while something else of the row changes.
class TextEditing final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void setEditorData(QWidget* editor, const QModelIndex& index) const override {
    const auto* line = qobject_cast<QLineEdit*>(editor);
    if (line == nullptr || !line->isModified()) QStyledItemDelegate::setEditorData(editor, index);
  }
};

}  // namespace trackloom
