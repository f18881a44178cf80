#pragma once

#include <QCheckBox>
#include <QRadioButton>

namespace trackloom {

/// An option button or a check box whose caption is a paragraph: it wraps to the width it gets, beside the mark.
template <class Button>
class ParagraphButton : public Button {
 public:
  explicit ParagraphButton(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& point) const override { return this->rect().contains(point); }

 private:
  /// The side of the mark.
  int markSide() const;
  /// Where the caption begins.
  int textLeft() const;
};

using ParagraphRadioButton = ParagraphButton<QRadioButton>;
using ParagraphCheckBox = ParagraphButton<QCheckBox>;

}  // namespace trackloom
