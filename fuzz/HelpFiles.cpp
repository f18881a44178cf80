#include "HelpFiles.h"

#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

#include "engines/helpfile/Damaged.h"
#include "engines/helpfile/HelpBookFile.h"
#include "engines/helpfile/HelpSources.h"

namespace trackloom::fuzz {

namespace {

using engines::helpfile::helpBook;

void require(bool holds) {
  if (!holds) std::abort();
}

std::size_t sizeOf(const HelpBook& book) {
  std::size_t size = 0;
  for (const auto& [name, bytes] : book.files) size += bytes.size();
  return size;
}

/// The system's own files are written anew, and all others are kept.
bool holdsFilesOf(const HelpBook& book, const HelpBook& other) {
  for (const auto& [name, bytes] : other.files)
    if (name.front() != '#' && !name.starts_with("Trackloom.hh") &&
        (!book.files.contains(name) || book.files.at(name) != bytes))
      return false;
  return true;
}

std::optional<HelpBook> readable(std::string_view bytes) {
  try {
    return helpBook(bytes);
  } catch (const engines::helpfile::Damaged&) {
    return std::nullopt;
  }
}

void requireWhole(const HelpBook& book) {
  require(sizeOf(book) <= engines::helpfile::LargestHelpFile);
  require(book.files.contains(book.firstPage.substr(0, book.firstPage.find('#'))));
  for (const HelpBook::Page& page : book.pages) require(book.files.contains(page.file));
  for (const auto* lines : {&book.contents, &book.index})
    for (const HelpBook::Line& line : *lines) require(line.depth >= 0 && !line.name.empty());
}

/// Nothing where a name is too long for the directory, or the book has all but as many files as one may have.
std::optional<std::string> rewritten(const HelpBook& book) {
  constexpr std::size_t OfTheSystem = 6;
  if (book.files.size() + OfTheSystem > engines::helpfile::MostEntries) return std::nullopt;
  try {
    return engines::helpfile::helpFileBytes(book);
  } catch (const std::length_error&) {
    return std::nullopt;
  }
}

}  // namespace

void runHelpFile(std::string_view bytes) {
  const auto book = readable(bytes);
  if (!book) return;
  requireWhole(*book);
  const auto written = rewritten(*book);
  if (written) require(holdsFilesOf(helpBook(*written), *book));
}

}  // namespace trackloom::fuzz
