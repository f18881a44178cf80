#pragma once

namespace trackloom {

/// Runs the tests of this program, with the arguments of its main; the exit status.
int runTests(int argc, char** argv);

}  // namespace trackloom
