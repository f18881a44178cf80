#pragma once

#include "ports/FileDialogs.h"

namespace trackloom {

class QtDesk;

/// The toolkit's own dialog, in front of the window that the user works in. Whether a read-only box is hidden, and the
/// styles, make no difference to it.
class QtFileDialogs final : public FileDialogs {
 public:
  explicit QtFileDialogs(QtDesk& desk) : desk_(desk) {}

  std::optional<HostPath> choose(const FileDialog& dialog) override;

 private:
  QtDesk& desk_;
};

}  // namespace trackloom
