#pragma once

#include <memory>
#include <vector>

#include "shell/Program.h"

namespace trackloom {

/// Every form of a program that has been started, loaded and filled with the longest texts that it comes to show; the
/// main window at its designed size with a layout of the given kind.
std::vector<std::shared_ptr<Form>> filledForms(Program& program, std::int16_t kind);

}  // namespace trackloom
