#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "architecture/SourceTree.h"

namespace trackloom::architecture {

/// What breaks a rule, one sentence each, beginning with the place as "file:line: " where there is one. Empty: the rule
/// holds.
using Faults = std::vector<std::string>;

/// A folder of src/ includes only folders that it may know, and every folder is one that the table of this rule names.
Faults forbiddenEdges(const SourceTree& tree);

/// Only desktop and app know Qt, only engines know other libraries, and only runtime, engines and app call the host.
Faults foreignHeaders(const SourceTree& tree);

/// Neither files nor folders of src/ include each other in a circle.
Faults includeCycles(const SourceTree& tree);

/// A .cpp has at most 500 lines, a .h at most 150.
Faults oversizedFiles(const SourceTree& tree);

/// A function has at most 60 lines from its head to its closing brace.
Faults oversizedFunctions(const SourceTree& tree);

/// No header has a `using namespace`.
Faults usingNamespaceInHeaders(const SourceTree& tree);

/// A file of tests is a .cpp whose name ends in "_test.cpp", and no other file has such a name.
Faults testFileNames(const SourceTree& tree);

/// No test's name has a semicolon, at which CTest would cut it and run neither part.
Faults unreachableTests(const SourceTree& tree);

/// Every case of the book has a test whose name begins with its number, such as "E001: ", and every such number is in
/// the book, once, rising. A case is a line "- **E001** One sentence.".
Faults bookAgainstTests(std::string_view book, const SourceTree& tree);

/// Every line of the index "Where is decided what" names a file of the tree and a function that stands in it with its
/// body.
Faults indexAgainstSources(std::string_view page, const SourceTree& tree);

}  // namespace trackloom::architecture
