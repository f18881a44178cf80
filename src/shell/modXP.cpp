#include "shell/modXP.h"

#include "ports/CommonControls.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

bool InitXPControls(CommonControls& controls) {
  constexpr int StructureSize = 8;
  constexpr int UserExClasses = 0x200;
  try {
    controls.initialise(StructureSize, UserExClasses);
    return true;
  } catch (const RuntimeError&) {
    return false;
  }
}

}  // namespace trackloom
