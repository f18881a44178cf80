#include "desktop/Meter.h"

#include <algorithm>

namespace trackloom {

Meter::Meter(QWidget* parent) : QProgressBar(parent) {
  setAlignment(Qt::AlignCenter);
}

void Meter::show(const QString& words, int value, int maximum) {
  words_ = words;
  // An empty range would show a bar that never rests.
  setRange(0, std::max(maximum, 1));
  setValue(std::clamp(value, 0, this->maximum()));
  setAccessibleDescription(words);
  update();
}

}  // namespace trackloom
