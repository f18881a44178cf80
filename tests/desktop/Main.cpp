#include <sanitizer/lsan_interface.h>

#include <QApplication>
#include <cstdio>
#include <cstdlib>

#include "catch_session.h"
#include "desktop/Look.h"

// There only in a build that is instrumented.
#pragma weak __lsan_do_recoverable_leak_check

namespace {

/// Takes nothing down, as the program itself: threads that wait for the desktop's bus may still look at it.
[[noreturn]] void end(int status) {
  const bool leaks = &__lsan_do_recoverable_leak_check != nullptr && __lsan_do_recoverable_leak_check() != 0;
  std::fflush(nullptr);
  std::_Exit(leaks ? EXIT_FAILURE : status);
}

}  // namespace

int main(int argc, char** argv) {
  // Tests need no screen, also when they are started by hand.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  trackloom::dress();
  end(trackloom::runTests(argc, argv));
}
