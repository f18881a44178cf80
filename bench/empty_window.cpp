#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QTimer>
#include <utility>

namespace {

/// A window without anything in it, over which an empty dialog opens once it is active, if that is wished.
class EmptyWindow : public QWidget {
 public:
  explicit EmptyWindow(bool withDialog) : dialogDue_(withDialog) {
    setWindowTitle("Empty Window");
    dialog_.setWindowTitle("Empty Dialog");
    dialog_.setModal(true);
  }

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::WindowActivate && std::exchange(dialogDue_, false))
      QTimer::singleShot(0, &dialog_, &QDialog::show);
    return QWidget::event(event);
  }

 private:
  bool dialogDue_;
  QDialog dialog_{this};
};

}  // namespace

/// What any program of this toolkit takes to its first window, and with an argument to a dialog over it: the peers of
/// bench/start.
int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const bool withDialog = argc > 1;
  EmptyWindow window(withDialog);
  withDialog ? window.showMaximized() : window.show();
  return QApplication::exec();
}
