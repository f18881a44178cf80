#pragma once

#include <QMainWindow>
#include <string>

namespace trackloom {

/// Where the window's bars stand, as printable text.
std::string arrangementOf(const QMainWindow& window);

/// Puts the bars back. A text that arrangementOf() did not make, down to the last byte, moves nothing.
void applyArrangement(QMainWindow& window, const std::string& arrangement);

}  // namespace trackloom
