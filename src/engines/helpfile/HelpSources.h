#pragma once

#include <string>

#include "ports/HelpBook.h"

namespace trackloom::engines::helpfile {

/// The book whose sources lie in a folder: pages and pictures, and beside them contents.txt, index.txt and topics.txt,
/// each line a place or a number, then a blank, then its name or place; each two blanks before a line of the contents
/// are a step of depth. The first line of the contents is the first page. Throws RuntimeError, and
/// std::invalid_argument for a line that says nothing.
HelpBook readHelpSources(const HostPath& folder);

/// The bytes of a help file that holds the book: the same book gives the same bytes.
std::string helpFileBytes(const HelpBook& book);

}  // namespace trackloom::engines::helpfile
