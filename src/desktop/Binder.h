#pragma once

#include <string>
#include <vector>

#include "controls/Form.h"
#include "desktop/FaceTable.h"

namespace trackloom {

class Face;

/// Ties every control of the face's form to the widget that bears its name, both ways; says what could not be tied: a
/// control without a widget or with one of the wrong class, a name borne twice, a widget without a control.
std::vector<std::string> bindControls(Face& face);

/// What is wrong between a form and its design; empty when all fits.
std::vector<std::string> bindingProblems(Form& form, const std::vector<FaceDesign>& designs = faceDesigns());

}  // namespace trackloom
