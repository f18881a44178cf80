#pragma once

#include <QLineEdit>

#include "controls/TextBox.h"

namespace trackloom {

class Face;

/// Typing and pasting go into the box as far as its length allows; the part that does not fit is not taken. A text that
/// the program has set may be longer, and stays so until the user shortens it.
void tieText(Face& face, QLineEdit& line, TextBox& box);

}  // namespace trackloom
