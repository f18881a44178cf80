#include "engines/ground/EngineError.h"

#include <catch2/catch.hpp>
#include <cerrno>

namespace trackloom::engines {

TEST_CASE("An error of a source names the file and says why") {
  const EngineError missing = fileError(HostPath("/home/u/a.mp3"), ENOENT);
  CHECK(missing.kind() == ErrorKind::File);
  CHECK(missing.number() == 0);
  CHECK(missing.words() == "/home/u/a.mp3: No such file or directory");
  CHECK(fileError(HostPath("/b"), "changed while it was being recorded").words() ==
        "/b: changed while it was being recorded");
}

}  // namespace trackloom::engines
