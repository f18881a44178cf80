// The test library's own code is as large as a program, so all of them share one compilation of it.
#define CATCH_CONFIG_RUNNER
#include "catch_session.h"

#include <catch2/catch.hpp>

#include "words/table/NotingListener.h"

int trackloom::runTests(int argc, char** argv) {
  return Catch::Session().run(argc, argv);
}
