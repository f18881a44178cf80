#pragma once

#include <string>
#include <vector>

#include "writing/Dialogue.h"

namespace trackloom {

/// The lines of a file in tests/writing/dialogues; a line that begins with # says what it is about.
std::vector<std::string> dialogue(const std::string& name);

/// The dialogue went as written down; told is the first place where it did not.
void checkDialogue(Dialogue& machine, const std::string& name);

void insert(Dialogue& machine, const fakes::FakeDisc& disc = {});

}  // namespace trackloom
