#define CATCH_CONFIG_RUNNER
#include <QApplication>
#include <catch2/catch.hpp>

#include "desktop/Look.h"
#include "words/table/NotingListener.h"

int main(int argc, char** argv) {
  // Tests need no screen, also when they are started by hand.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  trackloom::dress(application);
  return Catch::Session().run(argc, argv);
}
