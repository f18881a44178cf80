#include "controls/TabStrip.h"

#include "controls/ControlVisitor.h"

namespace trackloom {

TabStrip::TabStrip(Form& form, std::string name, std::vector<std::string> captions)
    : Control(form, std::move(name)), captions_(std::move(captions)) {}

void TabStrip::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

void TabStrip::choose(int tab) {
  if (!usable() || SelectedTab == tab) return;
  SelectedTab = tab;
  raise(Click);
}

}  // namespace trackloom
