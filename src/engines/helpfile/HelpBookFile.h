#pragma once

#include <memory>
#include <string_view>

#include "engines/helpfile/Chm.h"
#include "ports/HelpBook.h"
#include "ports/Patience.h"

namespace trackloom::engines::helpfile {

/// A HelpBookReader.
std::shared_ptr<const HelpBook> readHelpBook(const HostPath& path);

/// The same on a thread aside, for which the window's thread waits with `patience`, which outlives it.
HelpBookReader patientReader(Patience& patience);

/// What the bytes of a help file hold, without the pages that cannot be shown. Throws Damaged, also where there is no
/// page to begin with.
HelpBook helpBook(std::string_view bytes);

/// A page's words without its marks, each run of blanks and line ends as one blank.
std::string plainText(std::string_view html);

}  // namespace trackloom::engines::helpfile
