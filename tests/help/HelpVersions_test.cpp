#include "help/HelpVersions.h"

#include <catch2/catch.hpp>
#include <map>

namespace trackloom {

TEST_CASE("Each code of the help engine asks for its least version") {
  const std::map<std::int32_t, std::string> least{
      {16, "4.72.7290"}, {17, "4.72.7323"}, {18, "4.72.7325"}, {19, "4.72.8164.0"},
      {20, "4.73.8252"}, {21, "4.73.8412"}, {22, "4.73.8474"}, {23, "4.73.8561"},
  };
  for (std::int32_t code = -1; code < 300; ++code) {
    INFO(code);
    CHECK(leastHelpVersion(code) == (least.contains(code) ? least.at(code) : "unknown"));
  }
}

TEST_CASE("Each code of the browser asks for its least version") {
  const std::map<std::int32_t, std::string> least{
      {256, "4.70.1155"},      {257, "4.70.1158"},      {258, "4.70.1215"},      {259, "4.70.1300"},
      {260, "4.71.1008.3"},    {261, "4.71.1712.5"},    {262, "4.72.2106.7"},    {263, "4.72.3110.03"},
      {264, "4.72.3612.1707"}, {265, "5.00.0518.5"},    {266, "5.00.0910.1308"}, {267, "5.00.2014.213"},
      {268, "5.00.2314.1000"}, {269, "5.00.2614.3500"}, {270, "5.0.2717.2000"},
  };
  for (std::int32_t code = -1; code < 300; ++code) {
    INFO(code);
    CHECK(leastBrowserVersion(code) == (least.contains(code) ? least.at(code) : "unknown"));
  }
}

TEST_CASE("A version of the help engine that people know has their name for it") {
  struct Row {
    FileVersion version;
    std::string text;
    std::string name;
  };
  for (const Row& row : std::initializer_list<Row>{{{4, 72, 7290, 0}, "4.72.7290.00", "1.0"},
                                                   {{4, 72, 7323, 0}, "4.72.7323.00", "1.1"},
                                                   {{4, 72, 7325, 0}, "4.72.7325.00", "1.1a"},
                                                   {{4, 72, 8164, 0}, "4.72.8164.00", "1.1b"},
                                                   {{4, 73, 8252, 0}, "4.73.8252.00", "1.2"},
                                                   {{4, 73, 8412, 0}, "4.73.8412.00", "1.21"},
                                                   {{4, 73, 8474, 0}, "4.73.8474.00", "1.21a"},
                                                   {{4, 73, 8561, 0}, "4.73.8561.00", "1.22"},
                                                   {{4, 74, 8566, 0}, "4.74.8566.00", "1.3"},
                                                   {{4, 74, 8566, 1}, "4.74.8566.01", "unknown"},
                                                   {{5, 2, 31, 7}, "5.02.0031.07", "unknown"}}) {
    CHECK(helpVersionText(row.version) == row.text);
    CHECK(friendlyHelpName(row.text) == row.name);
  }
  CHECK(friendlyHelpName("") == "unknown");
}

TEST_CASE("A version of the browser that people know has their name for it") {
  struct Row {
    FileVersion version;
    std::string text;
    std::string name;
  };
  for (const Row& row :
       std::initializer_list<Row>{{{4, 70, 1155, 0}, "4.70.1155.0000", "3.0"},
                                  {{4, 70, 1158, 0}, "4.70.1158.0000", "3.0 OSR2"},
                                  {{4, 70, 1215, 0}, "4.70.1215.0000", "3.02"},
                                  {{4, 70, 1300, 0}, "4.70.1300.0000", "3.02"},
                                  {{4, 71, 1008, 3000}, "4.71.1008.3000", "4.0 PP2"},
                                  {{4, 71, 1712, 5000}, "4.71.1712.5000", "4.0"},
                                  {{4, 72, 2106, 7000}, "4.72.2106.7000", "4.01"},
                                  {{4, 72, 3110, 300}, "4.72.3110.0300", "4.0 SP1"},
                                  {{4, 72, 3612, 1707}, "4.72.3612.1707", "4.0 SP2"},
                                  {{5, 0, 518, 5000}, "5.00.0518.5000", "5.0 beta 1"},
                                  {{5, 0, 910, 1308}, "5.00.0910.1308", "5.0 beta 2"},
                                  {{5, 0, 2014, 2130}, "5.00.2014.2130", "5.0"},
                                  {{5, 0, 2314, 1000}, "5.00.2314.1000", "5.0a (Office 2000)"},
                                  {{5, 0, 2614, 3500}, "5.00.2614.3500", "5.0b (Windows 98 SE)"},
                                  {{5, 0, 2717, 2000}, "5.00.2717.2000", "5.0c (Icon Security Issue Update)"},
                                  {{6, 0, 1, 2}, "6.00.0001.0002", "unknown"}}) {
    CHECK(browserVersionText(row.version) == row.text);
    CHECK(friendlyBrowserName(row.text) == row.name);
  }
}

TEST_CASE("E171: Versions compare as texts, so \"5.0.2717.2000\" is below \"5.00.0518.5\"") {
  CHECK_FALSE(isAtLeast("5.0.2717.2000", "5.00.0518.5"));
  CHECK(isAtLeast("5.00.0518.5", "5.0.2717.2000"));
  CHECK(isAtLeast("4.72.7290", "4.72.7290"));
  CHECK_FALSE(isAtLeast("10.00", "9.00"));
  CHECK(isAtLeast("4.72a", "4.72A"));
  CHECK(isAtLeast("4.72A", "4.72a"));
}

}  // namespace trackloom
