#include "engines/helpfile/Markup.h"

#include <catch2/catch.hpp>

#include "engines/helpfile/Damaged.h"
#include "engines/helpfile/HelpBookFile.h"

namespace trackloom::engines::helpfile {

namespace {

std::vector<std::string> pieces(std::string_view html) {
  std::vector<std::string> all;
  while (const auto piece = takePiece(html)) all.push_back((piece->isMark ? "<" : "") + std::string(piece->text));
  return all;
}

std::string told(const std::vector<HelpBook::Line>& lines) {
  std::string text;
  for (const auto& line : lines) text += std::to_string(line.depth) + " " + line.name + " " + line.place + "\n";
  return text;
}

std::string object(const std::string& name, const std::string& place) {
  return "<OBJECT type=\"text/sitemap\"><param name=\"Name\" value=\"" + name + "\"><param name=\"Local\" value=\"" +
         place + "\"></OBJECT>";
}

}  // namespace

TEST_CASE("Marks and the texts between them come piece by piece") {
  using Pieces = std::vector<std::string>;
  CHECK(pieces("").empty());
  CHECK(pieces("a<b>c</b>") == Pieces{"a", "<b", "c", "</b"});
  CHECK(pieces("<>") == Pieces{"<"});
  CHECK(pieces("a<b") == Pieces{"a", "<b"});
  CHECK(pieces("<<b>>") == Pieces{"<<b", ">"});
}

TEST_CASE("A page's words come without its marks, its head and its broken lines") {
  CHECK(plainText("<html><head><title>T</title></head><body><h1>One</h1>\n<p>two  &lt;3&gt; &amp;lt;</p></body>") ==
        "One two <3> &lt; ");
  CHECK(plainText("<HEAD>x</HEAD>y<br>z") == "y z");
  CHECK(plainText("a<header>b") == "a b");
  CHECK(plainText("").empty());
}

TEST_CASE("A page that keeps a viewer busy for hours is not showable") {
  const auto times = [](const char* text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
  };
  CHECK(isShowable(""));
  CHECK(isShowable("<!DOCTYPE html><html><head><meta charset=\"utf-8\"></head><body><p>x<br>y</p></body></html>"));
  CHECK(isShowable(times("<b>", 40)));
  CHECK_FALSE(isShowable(times("<b>", 41)));
  CHECK(isShowable(times("<p>x</p>", 2500)));
  CHECK_FALSE(isShowable(times("<p>x</p>", 2501)));
  // The void elements of HTML that a help page uses.
  for (const char* alone : {"<br>", "<hr>", "<img>", "<input>", "<link>", "<meta>"}) {
    INFO(alone);
    CHECK(isShowable(times(alone, 41)));
  }
  CHECK(isShowable(times("<br>", 5000)));
  CHECK(isShowable(times("<table>", 2) + times("</table>", 2) + times("<table>", 2)));
  CHECK_FALSE(isShowable(times("<table>", 3)));
  CHECK(isShowable(times("x", 1000) + " " + times("x", 1000) + "\n" + times("x", 1000)));
  CHECK_FALSE(isShowable(times("x", 1001)));
  CHECK(isShowable(times("x ", 64 << 10)));
  CHECK_FALSE(isShowable(times("x ", 64 << 10) + "x"));
}

TEST_CASE("A site map's lines are as deep as their lists") {
  const std::string map = "<UL><LI>" + object("A", "a.htm") + "<UL><LI>" + object("B &amp; &quot;C&quot;", "b.htm#x") +
                          "</UL><LI>" + object("D", "d.htm") + "</UL>";
  CHECK(told(siteMap(map)) == "0 A a.htm\n1 B & \"C\" b.htm#x\n0 D d.htm\n");
}

TEST_CASE("A line without a name is none, and the first of two names counts") {
  CHECK(siteMap(object("", "a.htm")).empty());
  CHECK(told(siteMap("<ul><object><param name=\"Name\" value=\"A\"><param name=\"Name\" value=\"B\"></object>")) ==
        "0 A \n");
  CHECK(told(siteMap(object("A", "") + "</ul></ul></ul>" + object("B", ""))) == "0 A \n0 B \n");
}

TEST_CASE("A site map that is deeper or longer than anybody reads is cut or refused") {
  std::string deep;
  for (int i = 0; i < 1000; ++i) deep += "<UL>";
  CHECK(siteMap(deep + object("A", "a")).front().depth == 16);
  std::string longMap;
  for (std::size_t i = 0; i <= MostEntries; ++i) longMap += object("A", "a");
  CHECK_THROWS_AS(siteMap(longMap), Damaged);
}

TEST_CASE("A site map that was written reads back as it was") {
  const std::vector<HelpBook::Line> lines{
      {0, "<A> & \"B\"", "a.htm"}, {1, "it's", "b.htm#x&y"}, {2, "C", "c.htm"}, {0, "&lt;", "d.htm"}};
  CHECK(told(siteMap(siteMapText(lines))) == told(lines));
}

}  // namespace trackloom::engines::helpfile
