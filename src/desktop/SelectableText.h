#pragma once

#include <QTextEdit>

namespace trackloom {

/// A text to be read and copied, not written. It wraps within words too, so that the longest path fits, and is as high
/// as its lines.
class SelectableText final : public QTextEdit {
 public:
  explicit SelectableText(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
};

}  // namespace trackloom
