#pragma once

#include "runtime/RuntimeError.h"

namespace trackloom {

/// One statement of a procedure that continues on errors: where it fails it is skipped, and the next one runs.
template <class Statement>
void skipOnError(Statement&& statement) {
  try {
    statement();
  } catch (const RuntimeError&) {
    // The procedures that use this have no words for a failure, by design.
    return;
  }
}

}  // namespace trackloom
