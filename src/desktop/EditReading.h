#pragma once

namespace trackloom {

/// Lets screen readers read edit boxes by an object of our own. Asked for the word at the end of a text, where the
/// cursor stands after typing, the toolkit's own one never answers.
void letEditsBeRead();

}  // namespace trackloom
