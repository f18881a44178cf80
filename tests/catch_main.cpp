#include "catch_session.h"

int main(int argc, char** argv) {
  return trackloom::runTests(argc, argv);
}
