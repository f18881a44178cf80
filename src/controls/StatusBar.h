#pragma once

#include <cstddef>
#include <vector>

#include "controls/Control.h"

namespace trackloom {

/// A row of text panels along the foot of a form; panels count from 1.
class StatusBar final : public Control {
 public:
  StatusBar(Form& form, std::string name, std::size_t panels = 1);
  void accept(ControlVisitor& visitor) override;

  std::size_t count() const { return panels_.size(); }
  const std::string& PanelText(std::size_t panel) const { return panels_.at(panel - 1); }
  void SetPanelText(std::size_t panel, std::string text);

 private:
  std::vector<std::string> panels_;
};

}  // namespace trackloom
