#include <QApplication>
#include <QWidget>

/// What any program of this toolkit takes to its first window: the peer of bench/start.
int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QWidget window;
  window.setWindowTitle("Empty Window");
  window.show();
  return QApplication::exec();
}
