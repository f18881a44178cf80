#pragma once

#include <string>
#include <vector>

#include "controls/Control.h"

namespace trackloom {

/// Pictures by number, from 1, and by name; for the rows of a list. It has no face of its own. A number or name that it
/// does not have raises error 9.
class ImageList final : public Control {
 public:
  ImageList(Form& form, std::string name, std::vector<std::string> pictures);
  void accept(ControlVisitor& /*visitor*/) override {}

  int Count() const { return static_cast<int>(pictures_.size()); }
  const std::string& Picture(int number) const;
  int Number(const std::string& picture) const;

 private:
  std::vector<std::string> pictures_;
};

}  // namespace trackloom
