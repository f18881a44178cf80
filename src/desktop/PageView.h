#pragma once

#include <QString>
#include <QWidget>
#include <vector>

#include "desktop/PageLayout.h"

namespace trackloom {

/// One page of a document as it will lie on paper, at a scale. Screen readers read it as text, line by line.
class PageView final : public QWidget {
 public:
  explicit PageView(QWidget* parent = nullptr);

  void setPage(const PrintedPage& page, const QString& name);
  /// 1 is the size of the paper on a screen of 96 pixels to the inch.
  void setScale(double scale);
  double scale() const { return scale_; }

  QSize sizeHint() const override;
  /// The scale at which the sheet is as wide as the room in pixels, or lies wholly within it.
  double scaleFor(const QSize& room, bool wholly) const;

  /// What the page says, a line for each title, row and footer.
  const QString& text() const { return text_; }
  /// Where the words at this place of the text stand in the widget.
  QRect placeOf(int offset) const;
  int offsetAt(const QPoint& point) const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QRectF sheet() const;

  PrintedPage page_;
  QString text_;
  double scale_ = 1;
};

/// Lets screen readers read the pages of a PageView.
void letPagesBeRead();

}  // namespace trackloom
