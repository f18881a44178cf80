#include <QApplication>
#include <QMessageBox>

/// Shows what keeps Trackloom from starting, in a window: tell <words>.
int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const QStringList words = QApplication::arguments();
  if (words.size() != 2) return 2;
  QGuiApplication::setDesktopFileName("trackloom");
  QMessageBox box(QMessageBox::Warning, "Trackloom", words.at(1));
  box.setTextFormat(Qt::PlainText);
  box.exec();
  return 0;
}
