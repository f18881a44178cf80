#pragma once

#include <string>

#include "desktop/Paper.h"
#include "desktop/PrintDocument.h"

class QPrinter;

namespace trackloom {

/// The document as a PDF file, one page of the paper after the other.
std::string pdfOf(const PrintDocument& document, Paper paper);

/// Prints the pages that its user has chosen on the printer's own paper, which must be printed to its edges. False: it
/// takes no pages.
bool printOn(const PrintDocument& document, QPrinter& printer);

}  // namespace trackloom
