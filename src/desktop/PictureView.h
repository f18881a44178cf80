#pragma once

#include <QIcon>
#include <QWidget>

namespace trackloom {

/// A drawing that fills the widget, crisp at every scale of the screen.
class PictureView final : public QWidget {
 public:
  explicit PictureView(QWidget* parent = nullptr) : QWidget(parent) {}

  void setPicture(const QIcon& picture);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon picture_;
};

}  // namespace trackloom
