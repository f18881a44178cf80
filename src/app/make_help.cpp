#include <cstdio>
#include <exception>

#include "engines/helpfile/HelpSources.h"
#include "runtime/Files.h"

/// Puts the help file together: make-help <folder of the pages> <help file>.
int main(int argc, char** argv) {
  using namespace trackloom;
  if (argc != 3) {
    std::fputs("usage: make-help <folder of the pages> <help file>\n", stderr);
    return 2;
  }
  try {
    const HelpBook book = engines::helpfile::readHelpSources(HostPath(argv[1]));
    ReplaceFile(HostPath(argv[2]), engines::helpfile::helpFileBytes(book));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make-help: %s: %s\n", argv[1], error.what());
    return 1;
  }
  return 0;
}
