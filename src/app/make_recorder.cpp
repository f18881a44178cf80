#include <cstdio>

#include "engines/virtual/VirtualRecorders.h"
#include "runtime/RuntimeError.h"

/// Lays out the virtual recorder that the program is shipped with: make-recorder <folder>.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make-recorder <folder>\n", stderr);
    return 2;
  }
  try {
    trackloom::engines::virtualrecorder::createVirtualRecorder(trackloom::HostPath(argv[1]));
  } catch (const trackloom::RuntimeError& error) {
    std::fprintf(stderr, "make-recorder: %s: %s\n", argv[1], error.what());
    return 1;
  }
  return 0;
}
