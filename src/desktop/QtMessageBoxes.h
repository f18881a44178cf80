#pragma once

#include "ports/MessageBoxes.h"

namespace trackloom {

class QtDesk;

/// Boxes of the toolkit, in front of the window that the user works in. A question without a Cancel is answered by its
/// buttons only. One that says that the drive has failed has below it what the engine knows about that.
class QtMessageBoxes final : public MessageBoxes {
 public:
  explicit QtMessageBoxes(QtDesk& desk) : desk_(desk) {}

  BoxAnswer show(const MessageBox& box) override;

 private:
  QtDesk& desk_;
};

}  // namespace trackloom
