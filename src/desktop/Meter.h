#pragma once

#include <QProgressBar>

namespace trackloom {

/// A bar with a text of its own across its whole width, readable on the filled part and beside it.
class Meter final : public QProgressBar {
 public:
  explicit Meter(QWidget* parent);

  void show(const QString& words, int value, int maximum);
  QString text() const override { return words_; }

 private:
  QString words_;
};

}  // namespace trackloom
