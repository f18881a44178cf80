#include <catch2/catch.hpp>

#include "architecture/Rules.h"

namespace trackloom::architecture {

using Catch::Matchers::Contains;

namespace {

/// A tree of made-up files, so that each rule can be seen to find its fault.
SourceTree treeOf(const std::vector<std::pair<std::string, std::string>>& files) {
  SourceTree tree;
  for (const auto& [path, text] : files) tree.emplace(path, parseSource(path, text));
  return tree;
}

std::string linesOf(std::size_t count) {
  return std::string(count, '\n');
}

}  // namespace

TEST_CASE("The rule of edges finds a port that includes the model") {
  const Faults faults = forbiddenEdges(treeOf(
      {{"src/ports/A.h", "#pragma once\n#include \"model/B.h\"\n"}, {"src/model/B.h", "#include \"ports/A.h\"\n"}}));
  REQUIRE(faults.size() == 1);
  CHECK(faults[0] == "src/ports/A.h:2: ports includes src/model/B.h, but may include only runtime");
}

TEST_CASE("The rule of edges finds features that know each other") {
  CHECK(forbiddenEdges(treeOf({{"src/layout/A.h", "#include \"writing/B.h\"\n"}, {"src/writing/B.h", ""}})).size() ==
        1);
}

TEST_CASE("The rule of edges gives the desktop the forms and nothing else of a feature") {
  const SourceTree tree = treeOf({{"src/desktop/A.cpp", "#include \"layout/frmFiles.h\"\n#include \"layout/Rows.h\"\n"},
                                  {"src/layout/frmFiles.h", ""},
                                  {"src/layout/Rows.h", ""}});
  const Faults faults = forbiddenEdges(tree);
  REQUIRE(faults.size() == 1);
  CHECK_THAT(faults[0], Contains("desktop includes src/layout/Rows.h"));
}

TEST_CASE("The rule of edges lets the virtual recorder know the drives but not the writer") {
  const SourceTree tree =
      treeOf({{"src/engines/virtual/A.cpp", "#include \"engines/disc/B.h\"\n#include \"engines/writer/C.h\"\n"},
              {"src/engines/disc/B.h", ""},
              {"src/engines/writer/C.h", ""}});
  CHECK(forbiddenEdges(tree).size() == 1);
}

TEST_CASE("The rule of edges finds a folder that nobody has placed") {
  CHECK_THAT(forbiddenEdges(treeOf({{"src/sundries/A.h", ""}})).at(0), Contains("src/sundries has no row"));
}

TEST_CASE("The rule of edges lets app include everything") {
  CHECK(forbiddenEdges(treeOf({{"src/app/main.cpp", "#include \"desktop/A.h\"\n"}, {"src/desktop/A.h", ""}})).empty());
}

TEST_CASE("The rule of foreign headers finds Qt outside the desktop") {
  CHECK(foreignHeaders(treeOf({{"src/model/A.h", "#include <QString>\n"}})).size() == 1);
  CHECK(foreignHeaders(treeOf({{"src/engines/audio/A.h", "#include <QtCore/QFile>\n"}})).size() == 1);
  CHECK(foreignHeaders(treeOf({{"src/layout/A.cpp", "#include \"ui_frmFiles.h\"\n"}})).size() == 1);
  CHECK(foreignHeaders(treeOf({{"src/desktop/A.h", "#include <QString>\n"}})).empty());
}

TEST_CASE("The rule of foreign headers finds a library or the host in the core") {
  CHECK(foreignHeaders(treeOf({{"src/writing/A.cpp", "#include <mpg123.h>\n"}})).size() == 1);
  CHECK(foreignHeaders(treeOf({{"src/model/A.cpp", "#include <unistd.h>\n"}})).size() == 1);
  CHECK(foreignHeaders(treeOf({{"src/runtime/A.cpp", "#include <mpg123.h>\n"}})).size() == 1);
  CHECK(foreignHeaders(treeOf({{"src/engines/audio/A.cpp", "#include <mpg123.h>\n#include <unistd.h>\n"}})).empty());
  CHECK(foreignHeaders(treeOf({{"src/runtime/A.cpp", "#include <vector>\n#include <fcntl.h>\n"}})).empty());
}

TEST_CASE("The rule of foreign headers knows a folder's single headers of a library, and grants them to no other") {
  CHECK(foreignHeaders(treeOf({{"src/runtime/A.cpp", "#include <unicase.h>\n"}})).empty());
  CHECK(foreignHeaders(treeOf({{"src/model/A.cpp", "#include <unicase.h>\n"}})).size() == 1);
}

TEST_CASE("The rule of foreign headers looks past comments and texts") {
  CHECK(foreignHeaders(treeOf({{"src/model/A.h", "// #include <QString>\n/*\n#include <QString>\n*/\n"}})).empty());
  CHECK(foreignHeaders(treeOf({{"src/model/A.h", "auto a = R\"x(\n#include <QString>\n)x\";\n"}})).empty());
}

TEST_CASE("The rule of circles finds files that include each other") {
  const SourceTree tree = treeOf({{"src/model/A.h", "#include \"model/B.h\"\n"},
                                  {"src/model/B.h", "#include \"model/C.h\"\n"},
                                  {"src/model/C.h", "#include \"model/B.h\"\n"}});
  REQUIRE(includeCycles(tree).size() == 1);
  CHECK(includeCycles(tree)[0] == "src/model/B.h includes src/model/C.h includes src/model/B.h");
}

TEST_CASE("The rule of circles finds folders that include each other through different files") {
  const SourceTree tree = treeOf({{"src/engines/audio/A.h", "#include \"engines/disc/B.h\"\n"},
                                  {"src/engines/audio/D.h", ""},
                                  {"src/engines/disc/B.h", ""},
                                  {"src/engines/disc/C.h", "#include \"engines/audio/D.h\"\n"}});
  REQUIRE(includeCycles(tree).size() == 1);
  CHECK(includeCycles(tree)[0] == "engines/audio includes engines/disc includes engines/audio");
}

TEST_CASE("The rule of file sizes counts headers and sources apart") {
  CHECK(oversizedFiles(treeOf({{"src/model/A.h", linesOf(150)}, {"src/model/A.cpp", linesOf(500)}})).empty());
  CHECK(oversizedFiles(treeOf({{"src/model/A.h", linesOf(151)}, {"tests/model/A.cpp", linesOf(501)}})).size() == 2);
}

TEST_CASE("The rule of function sizes counts from the head to the closing brace") {
  CHECK(oversizedFunctions(treeOf({{"src/model/A.cpp", "void f() {" + linesOf(59) + "}\n"}})).empty());
  const Faults faults = oversizedFunctions(treeOf({{"src/model/A.cpp", "int a;\nvoid f()\n{" + linesOf(59) + "}\n"}}));
  REQUIRE(faults.size() == 1);
  CHECK(faults[0] == "src/model/A.cpp:2: the function has 61 lines, more than 60");
}

TEST_CASE("The rule of function sizes finds functions wherever they stand") {
  const std::string body = "{" + linesOf(60) + "}\n";
  const auto faultsIn = [&](const std::string& before, const std::string& after) {
    return oversizedFunctions(treeOf({{"src/model/A.h", before + body + after}})).size();
  };
  CHECK(faultsIn("namespace a { namespace {\nvoid f() const noexcept ", "}}") == 1);
  CHECK(faultsIn("template <class T>\nstruct A : B<T> {\n public:\n  struct C { int d = 0; };\n  auto f() -> int ",
                 "};") == 1);
  CHECK(faultsIn("A::A(int a) : a_{a}, b_{'{'}, c_(1'000) ", "") == 1);
  CHECK(faultsIn("TEST_CASE(\"one }\") ", "") == 1);
  CHECK(faultsIn("const auto f = [](int a) ", ";") == 1);
}

TEST_CASE("The rule of function sizes lets long tables and long types be") {
  CHECK(oversizedFunctions(treeOf({{"src/model/A.h", "const int a[] = {" + linesOf(70) + "};\n"}})).empty());
  CHECK(oversizedFunctions(treeOf({{"src/model/A.h", "struct A {" + linesOf(70) + "};\nvoid f() {}\n"}})).empty());
}

TEST_CASE("The rule of namespaces looks at headers only") {
  const std::string text = "#pragma once\nusing namespace std;\n";
  CHECK(usingNamespaceInHeaders(treeOf({{"src/model/A.h", text}})).at(0) ==
        "src/model/A.h:2: a header has `using namespace`");
  CHECK(usingNamespaceInHeaders(treeOf({{"src/model/A.cpp", text}})).empty());
  CHECK(usingNamespaceInHeaders(treeOf({{"src/model/A.h", "// using namespace std;\n"}})).empty());
}

TEST_CASE("The rule of the book finds a case without a test and a test without a case") {
  const SourceTree tree = treeOf({{"tests/model/A.cpp", "TEST_CASE(\"E002: two\") {}\nTEST_CASE(\"Other\") {}\n"}});
  CHECK(bookAgainstTests("# Book\n\n- **E002** Two.\n", tree).empty());
  CHECK(bookAgainstTests("- **E001** One.\n- **E002** Two.\n", tree) ==
        Faults{"docs/edge-cases.md: no test's name begins with \"E001: \""});
  CHECK(bookAgainstTests("", tree) ==
        Faults{"tests/model/A.cpp: a test bears E002, which docs/edge-cases.md does not have"});
}

TEST_CASE("The rule of the book finds numbers out of order or entered twice") {
  const SourceTree tree =
      treeOf({{"tests/model/A.cpp", "TEST_CASE(\"E001: a\") {}\nTEST_CASE_METHOD(X, \"E002: b\") {}\n"}});
  CHECK(bookAgainstTests("- **E002** b\n- **E001** a\n", tree) ==
        Faults{"docs/edge-cases.md: E001 stands behind E002"});
  CHECK(bookAgainstTests("- **E001** a\n- **E001** a\n- **E002** b\n", tree).size() == 1);
}

TEST_CASE("The rule of test files finds tests in a file of another name, and such a name without tests") {
  CHECK(testFileNames(treeOf({{"tests/model/ATest.cpp", "TEST_CASE(\"One\") {}\n"}})) ==
        Faults{"tests/model/ATest.cpp: tests stand in *_test.cpp"});
  CHECK(testFileNames(treeOf({{"tests/model/A_test.cpp", "int a;\n"}})) ==
        Faults{"tests/model/A_test.cpp: has no test for all its name"});
  CHECK(testFileNames(treeOf({{"tests/model/A_test.cpp", "TEST_CASE(\"One\") {}\n"}, {"tests/B.cpp", ""}})).empty());
}

TEST_CASE("The rule of test names finds the one that is cut in two") {
  CHECK(
      unreachableTests(treeOf({{"tests/model/A_test.cpp", "TEST_CASE(\"One; two\") {}\nTEST_CASE(\"Three\") {}\n"}})) ==
      Faults{"tests/model/A_test.cpp: CTest cuts a test's name at its semicolon: One; two"});
}

TEST_CASE("The rule of the index finds files and functions that are gone") {
  const SourceTree tree = treeOf({{"src/model/A.cpp",
                                   "int A::one(int a) const {}\nvoid none(int);\nint x = called(1);\n"
                                   "void last() { if (called(2)) return; }\n"}});
  const auto faultsOf = [&](const std::string& file, const std::string& function) {
    return indexAgainstSources("## Where is decided what\n\n| Rule | File | Function |\n|---|---|---|\n| r | `" + file +
                                   "` | `" + function + "` |\n\n## Next\n| r | `gone` | `gone` |\n",
                               tree);
  };
  CHECK(faultsOf("src/model/A.cpp", "one").empty());
  CHECK(faultsOf("src/model/A.cpp", "last").empty());
  CHECK(faultsOf("src/model/B.cpp", "one") == Faults{"docs/architecture.md: there is no src/model/B.cpp"});
  for (const char* function : {"none", "called", "ast", "two"})
    CHECK(faultsOf("src/model/A.cpp", function) ==
          Faults{"docs/architecture.md: src/model/A.cpp does not define " + std::string(function)});
}

TEST_CASE("The rule of the index wants an index, and two names on each of its lines") {
  CHECK(indexAgainstSources("# Page\n", {}) == Faults{"docs/architecture.md: has no index"});
  CHECK(indexAgainstSources("## Where is decided what\n| r | `src/A.cpp` |\n", {}) ==
        Faults{"docs/architecture.md: a line of the index names a file and a function"});
}

}  // namespace trackloom::architecture
