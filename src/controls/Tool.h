#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "controls/Property.h"

namespace trackloom {

enum class ToolKind { Menu, Command, DropDown, Panel, Progress, Combo };

/// What a tool is by design. `children` are the entries that a menu or a drop-down opens; the picture and the shortcut
/// may be empty; a shortcut reads like "Ctrl+N".
struct ToolDesign {
  std::string name;
  ToolKind kind = ToolKind::Command;
  std::string caption;
  std::string picture;
  std::string shortcut;
  std::vector<std::string> children;
};

/// An entry of a combo tool: what is shown, and what the program keeps with it.
struct ComboEntry {
  std::string Text;
  std::string Tag;
};

/// One tool of the bars, one state wherever it is shown.
class Tool {
 public:
  explicit Tool(ToolDesign toolDesign) : design(std::move(toolDesign)) {}

  const ToolDesign design;
  const std::string& Name() const { return design.name; }

  Signal<> changed;
  Property<bool> Enabled{changed, true};
  Property<std::string> Text{changed, ""};
  Property<std::int32_t> Value{changed, 0};
  Property<std::int32_t> Maximum{changed, 0};
  /// Twips; 0 leaves the width to the bar.
  Property<double> Width{changed, 0};

  const std::vector<ComboEntry>& entries() const { return entries_; }
  /// Counts from 1; 0: none.
  int SelectedEntry() const { return selected_; }

 private:
  friend class DockStudio;
  std::vector<ComboEntry> entries_;
  int selected_ = 0;
};

}  // namespace trackloom
