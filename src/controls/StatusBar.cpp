#include "controls/StatusBar.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

StatusBar::StatusBar(Form& form, std::string name, std::size_t panels)
    : Control(form, std::move(name)), panels_(panels) {}

void StatusBar::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void StatusBar::SetPanelText(std::size_t panel, std::string text) {
  panels_.at(panel - 1) = std::move(text);
  changed();
}

}  // namespace trackloom
