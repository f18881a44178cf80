#include "desktop/ToldBar.h"

#include <QStyleOptionProgressBar>
#include <cstdint>

namespace trackloom {

namespace {

std::int64_t partOf(std::int64_t step, std::int64_t most, std::int64_t parts) {
  return most > 0 ? step * parts / most : 0;
}

}  // namespace

void ToldBar::showStep(int step) {
  constexpr std::int64_t Tenths = 10;
  step_ = step;
  const std::int64_t tenth = partOf(step, maximum(), Tenths);
  // The value is what a screen reader hears of, at each of its changes.
  setValue(static_cast<int>((tenth * maximum() + Tenths - 1) / Tenths));
  update();
}

QString ToldBar::text() const {
  constexpr std::int64_t Percent = 100;
  return QString::number(partOf(step_, maximum(), Percent)) + "%";
}

void ToldBar::initStyleOption(QStyleOptionProgressBar* option) const {
  QProgressBar::initStyleOption(option);
  option->progress = step_;
}

}  // namespace trackloom
