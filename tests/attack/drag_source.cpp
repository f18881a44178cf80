// A small window in the upper left corner from which files can be dragged by the mouse, all at once.
// Usage: drag-source <file>...
#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <memory>

namespace {

class Source final : public QLabel {
 public:
  explicit Source(QList<QUrl> files) : QLabel("Files"), files_(std::move(files)) {}

 protected:
  void mouseMoveEvent(QMouseEvent* event) override {
    if ((event->buttons() & Qt::LeftButton) == 0) return;
    auto dragged = std::make_unique<QMimeData>();
    dragged->setUrls(files_);
    // The toolkit destroys both when the drag is over.
    auto drag = std::make_unique<QDrag>(this);
    drag->setMimeData(dragged.release());
    drag.release()->exec(Qt::CopyAction);
  }

 private:
  QList<QUrl> files_;
};

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QList<QUrl> files;
  for (const QString& path : QApplication::arguments().mid(1)) files.push_back(QUrl::fromLocalFile(path));
  Source source(std::move(files));
  source.setWindowTitle("Drag source");
  source.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
  source.setGeometry(0, 0, 80, 40);
  source.show();
  return QApplication::exec();
}
