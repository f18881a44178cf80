#include <catch2/catch.hpp>

#include "Corpus.h"
#include "HelpFiles.h"
#include "engines/helpfile/HelpBookFile.h"

namespace trackloom::engines::helpfile {

TEST_CASE("The corpus of the help files runs through") {
  CHECK(fuzz::replay("help", fuzz::runHelpFile) > 20);
}

TEST_CASE("A help file that others have written is read") {
  for (const char* name : {"whole", "small-chunks", "one-chunk-large", "older-header"}) {
    INFO(name);
    const auto book = readHelpBook(HostPath(std::string(TRACKLOOM_SOURCE_DIR "/fuzz/corpus/help/") + name));
    REQUIRE(book != nullptr);
    CHECK(book->title == "T");
    CHECK(book->windows == std::vector<std::string>{"main"});
    CHECK(book->topics == std::map<std::int32_t, std::string>{{69, "a.htm"}, {70, "b.htm"}});
    REQUIRE(book->pages.size() == 2);
    CHECK(book->pages.front().title == "A & B");
  }
}

}  // namespace trackloom::engines::helpfile
