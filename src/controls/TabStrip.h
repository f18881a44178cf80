#pragma once

#include <vector>

#include "controls/Control.h"

namespace trackloom {

/// A row of tabs, one of them chosen; tabs count from 1. What a tab shows is its form's affair.
class TabStrip final : public Control {
 public:
  TabStrip(Form& form, std::string name, std::vector<std::string> captions);
  void accept(ControlVisitor& visitor) override;

  const std::vector<std::string>& captions() const { return captions_; }
  Property<int> SelectedTab{changed, 1};

  std::function<void()> Click;
  /// The tab already showing takes no click.
  void choose(int tab);

 private:
  std::vector<std::string> captions_;
};

}  // namespace trackloom
