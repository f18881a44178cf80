#pragma once

#include "controls/Control.h"

namespace trackloom {

/// A captioned box around other controls; disabled, it disables what stands in it.
class Frame final : public Control {
 public:
  Frame(Form& form, std::string name, std::string caption);
  void accept(ControlVisitor& visitor) override;

  Property<std::string> Caption;
};

}  // namespace trackloom
