#include "desktop/PageView.h"

#include <QAccessible>
#include <QPainter>
#include <algorithm>

#include "desktop/Shown.h"

namespace trackloom {

namespace {

/// Around the sheet, in pixels.
constexpr int Air = 12;

QString textOf(const PrintedPage& page) {
  QStringList lines;
  for (const PrintedWords& words : page.words) lines << words.text;
  return lines.join('\n');
}

}  // namespace

PageView::PageView(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
}

void PageView::setPage(const PrintedPage& page, const QString& name) {
  const int before = static_cast<int>(text_.size());
  page_ = page;
  text_ = textOf(page);
  setAccessibleName(name);
  adjustSize();
  update();
  QAccessibleTextUpdateEvent told(this, 0, QString(before, ' '), text_);
  QAccessible::updateAccessibility(&told);
}

void PageView::setScale(double scale) {
  scale_ = scale;
  adjustSize();
}

double PageView::scaleFor(const QSize& room, bool wholly) const {
  constexpr double Least = 0.1;
  const QSizeF sheet = page_.paper / TwipsPerPixel;
  const double across = (room.width() - 2 * Air) / sheet.width();
  const double down = (room.height() - 2 * Air) / sheet.height();
  return std::max(wholly ? std::min(across, down) : across, Least);
}

QSize PageView::sizeHint() const {
  return (page_.paper / TwipsPerPixel * scale_).toSize() + QSize(2 * Air, 2 * Air);
}

QRectF PageView::sheet() const {
  const QSizeF size = page_.paper / TwipsPerPixel * scale_;
  const double left = std::max((width() - size.width()) / 2, static_cast<double>(Air));
  return {QPointF(left, Air), size};
}

QRect PageView::placeOf(int offset) const {
  const auto line = static_cast<std::size_t>(text_.left(offset).count('\n'));
  if (line >= page_.words.size()) return {};
  const QRectF& place = page_.words[line].place;
  const double pixel = scale_ / TwipsPerPixel;
  return QRectF(sheet().topLeft() + place.topLeft() * pixel, place.size() * pixel).toAlignedRect();
}

int PageView::offsetAt(const QPoint& point) const {
  int offset = 0;
  for (const PrintedWords& words : page_.words) {
    if (placeOf(offset).contains(point)) return offset;
    offset += static_cast<int>(words.text.size()) + 1;
  }
  return -1;
}

void PageView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF place = sheet();
  painter.fillRect(place.translated(2, 2), palette().color(QPalette::Shadow));
  painter.fillRect(place, Qt::white);
  painter.translate(place.topLeft());
  painter.scale(scale_ / TwipsPerPixel, scale_ / TwipsPerPixel);
  page_.paint(painter);
  painter.resetTransform();
  if (!hasFocus()) return;
  painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
  painter.drawRect(place);
}

}  // namespace trackloom
