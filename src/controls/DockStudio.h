#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/Control.h"
#include "controls/Tool.h"

namespace trackloom {

enum class BarKind { Menu, Tools, Status };

/// A bar by design: its name and the names of its tools, in order.
struct BarDesign {
  std::string name;
  BarKind kind = BarKind::Tools;
  std::vector<std::string> tools;
};

/// A rectangle in twips.
struct ClientRect {
  double left = 0, top = 0, width = 0, height = 0;
  bool operator==(const ClientRect&) const = default;
};

/// The bars of the main window and the tools on them. Tools are looked up by name; an unknown name raises error 9. A
/// disabled tool raises nothing, also not by its shortcut.
class DockStudio final : public Control {
 public:
  DockStudio(Form& form, std::string name, std::vector<BarDesign> bars, std::vector<ToolDesign> tools);
  void accept(ControlVisitor& visitor) override;

  const std::vector<BarDesign>& bars() const { return bars_; }
  Tool& tool(const std::string& name);
  bool hasTool(const std::string& name) const { return tools_.contains(name); }

  void AddEntry(Tool& combo, std::string text, std::string tag);
  /// Raises ComboChanged like the user's choice does. Positions count from 1.
  void SelectEntry(Tool& combo, int position);

  /// 1: the bars take the platform's look; 0: a plain grey one.
  Property<int> UseThemeColours{changed, 1};
  /// Where the bars stand, in the face's own form; empty for the designed places. The face renews it when asked.
  Property<std::string> Arrangement{changed, ""};
  Signal<> arrangementWanted;

  /// What the bars leave free, and their own width in twips, as the face reports them.
  const ClientRect& ClientArea() const { return clientArea_; }
  double Width() const { return width_; }

  std::function<void(Tool&)> ToolClick;
  std::function<void()> ClientAreaChanged;
  std::function<void(Tool&, const ComboEntry&)> ComboChanged;
  std::function<void(const std::string& menu)> MenuOpened;

  void click(const std::string& name);
  void openMenu(const std::string& name);
  void chooseEntry(const std::string& name, int position);
  void reportArea(const ClientRect& area, double width);

 private:
  std::vector<BarDesign> bars_;
  std::unordered_map<std::string, std::unique_ptr<Tool>> tools_;
  ClientRect clientArea_;
  double width_ = 0;
};

}  // namespace trackloom
