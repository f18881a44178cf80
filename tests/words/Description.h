#pragma once

#include <string>
#include <vector>

#include "controls/Form.h"

namespace trackloom::words {

/// A form as its table would have it: a line for the form, one for each control in order, and one for each bar and
/// tool.
std::vector<std::string> describe(const Form& form);

}  // namespace trackloom::words
