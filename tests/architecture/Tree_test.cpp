#include <catch2/catch.hpp>

#include "architecture/Rules.h"
#include "fakes/TestFiles.h"

namespace trackloom::architecture {

namespace {

const std::filesystem::path root = TRACKLOOM_SOURCE_DIR;

void holds(const Faults& faults) {
  for (const std::string& fault : faults) UNSCOPED_INFO(fault);
  CHECK(faults.empty());
}

}  // namespace

TEST_CASE("The tree of sources is found") {
  CHECK(readTree(root).contains("src/runtime/Paths.h"));
}

TEST_CASE("A folder includes only the folders below it") {
  holds(forbiddenEdges(readTree(root)));
}

TEST_CASE("Qt and other libraries stay in the folders that are made for them") {
  holds(foreignHeaders(readTree(root)));
}

TEST_CASE("Neither files nor folders include each other in a circle") {
  holds(includeCycles(readTree(root)));
}

TEST_CASE("Files are short") {
  holds(oversizedFiles(readTree(root)));
}

TEST_CASE("Functions are short") {
  holds(oversizedFunctions(readTree(root)));
}

TEST_CASE("Headers force no namespace upon those who include them") {
  holds(usingNamespaceInHeaders(readTree(root)));
}

TEST_CASE("Files of tests are named in one way") {
  holds(testFileNames(readTree(root)));
}

TEST_CASE("Every test has a name by which it is found") {
  holds(unreachableTests(readTree(root)));
}

TEST_CASE("The book of odd cases and the tests have the same numbers") {
  holds(bookAgainstTests(fakes::contentOf(root / "docs/edge-cases.md"), readTree(root)));
}

TEST_CASE("The index of where is decided what leads to functions") {
  holds(indexAgainstSources(fakes::contentOf(root / "docs/architecture.md"), readTree(root)));
}

}  // namespace trackloom::architecture
