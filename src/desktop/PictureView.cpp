#include "desktop/PictureView.h"

#include <QPainter>

namespace trackloom {

void PictureView::setPicture(const QIcon& picture) {
  picture_ = picture;
  update();
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  picture_.paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

}  // namespace trackloom
