#pragma once

#include <QScrollBar>

namespace trackloom {

/// Two arrows, one above the other: the upper one raises the number, the lower one lowers it, and so do the keys.
class Spinner final : public QScrollBar {
 public:
  explicit Spinner(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  /// Where an arrow is drawn and pressed.
  QRect placeOf(SliderAction step) const;
  void drawArrow(QPainter& painter, SliderAction step, bool possible) const;
};

}  // namespace trackloom
