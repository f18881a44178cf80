#pragma once

#include <QProgressBar>

namespace trackloom {

/// A progress bar that shows every step, and tells a screen reader each tenth of the way once.
class ToldBar final : public QProgressBar {
 public:
  explicit ToldBar(QWidget* parent = nullptr) : QProgressBar(parent) {}

  /// A step within the bar's range.
  void showStep(int step);
  QString text() const override;

 protected:
  void initStyleOption(QStyleOptionProgressBar* option) const override;

 private:
  int step_ = 0;
};

}  // namespace trackloom
