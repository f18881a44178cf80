#include "controls/DockStudio.h"

#include <algorithm>
#include <utility>

#include "controls/ControlVisitor.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

DockStudio::DockStudio(Form& form, std::string name, std::vector<BarDesign> bars, std::vector<ToolDesign> tools)
    : Control(form, std::move(name)), bars_(std::move(bars)) {
  for (ToolDesign& design : tools) {
    const std::string toolName = design.name;
    tools_.emplace(toolName, std::make_unique<Tool>(std::move(design)));
  }
}

void DockStudio::accept(ControlVisitor& visitor) {
  visitor.visit(*this);
}

Tool& DockStudio::tool(const std::string& name) {
  const auto found = tools_.find(name);
  if (found == tools_.end()) throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  return *found->second;
}

void DockStudio::AddEntry(Tool& combo, std::string text, std::string tag) {
  combo.entries_.push_back({std::move(text), std::move(tag)});
  combo.changed();
}

void DockStudio::SelectEntry(Tool& combo, int position) {
  if (position < 1 || position > static_cast<int>(combo.entries_.size()))
    throw RuntimeError(RuntimeError::SubscriptOutOfRange);
  if (combo.selected_ == position) return;
  combo.selected_ = position;
  combo.changed();
  const ComboEntry entry = combo.entries_[static_cast<std::size_t>(position - 1)];
  raise([&] {
    if (ComboChanged) ComboChanged(combo, entry);
  });
}

void DockStudio::click(const std::string& name) {
  Tool& clicked = tool(name);
  if (!usable() || !clicked.Enabled) return;
  raise([&] {
    if (ToolClick) ToolClick(clicked);
  });
}

void DockStudio::openMenu(const std::string& name) {
  if (!usable() || !tool(name).Enabled) return;
  raise([&] {
    if (MenuOpened) MenuOpened(name);
  });
}

void DockStudio::chooseEntry(const std::string& name, int position) {
  Tool& combo = tool(name);
  if (usable() && combo.Enabled) SelectEntry(combo, position);
}

void DockStudio::reportArea(const ClientRect& area, double width) {
  if (clientArea_ == area && std::equal_to<>()(width_, width)) return;
  clientArea_ = area;
  width_ = width;
  raise(ClientAreaChanged);
}

}  // namespace trackloom
