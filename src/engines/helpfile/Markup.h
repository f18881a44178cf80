#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ports/HelpBook.h"

namespace trackloom::engines::helpfile {

/// A piece of a marked-up text: a mark without its angle brackets, or what stands between two.
struct Piece {
  bool isMark;
  std::string_view text;
};

/// Takes the next piece off the text; nothing at its end.
std::optional<Piece> takePiece(std::string_view& html);

/// A mark's name in lower case, with its slash where it closes.
std::string markName(std::string_view mark);

/// What a mark says for `name`, with its entities as the characters they stand for; empty where it says nothing.
std::string attribute(std::string_view mark, std::string_view name);

/// The text with its entities as the characters they stand for.
std::string withoutEntities(std::string_view text);

/// Whether a page is one that any viewer shows at once. One that is very long, has very many marks or very long words,
/// or nests them deeply, can keep a viewer busy for hours.
bool isShowable(std::string_view html);

/// The lines of a contents or index file. Throws Damaged where there are more than anybody reads.
std::vector<HelpBook::Line> siteMap(std::string_view html);

/// The same as a file, in which a name or a place may hold any character.
std::string siteMapText(const std::vector<HelpBook::Line>& lines);

}  // namespace trackloom::engines::helpfile
