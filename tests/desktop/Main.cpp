#include <QApplication>

#include "catch_session.h"
#include "desktop/Look.h"

int main(int argc, char** argv) {
  // Tests need no screen, also when they are started by hand.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  trackloom::dress(application);
  return trackloom::runTests(argc, argv);
}
