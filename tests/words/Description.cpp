#include "words/Description.h"

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/ControlVisitor.h"
#include "controls/DockStudio.h"
#include "controls/FolderTreeview.h"
#include "controls/Frame.h"
#include "controls/ImageList.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/ProgressBarEx.h"
#include "controls/StatusBar.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"
#include "controls/Timer.h"
#include "controls/VScrollBar.h"
#include "model/CommonDialog.h"
#include "words/table/WordTable.h"

namespace trackloom::words {

namespace {

std::string quoted(const std::string& text) {
  return " " + inQuotes(text);
}

std::string when(bool holds, const std::string& word) {
  return holds ? " " + word : "";
}

/// What is told of a number only where it is not the usual one.
std::string unless(long usual, const std::string& key, long number) {
  return number == usual ? "" : " " + key + " " + std::to_string(number);
}

class Describer final : public ControlVisitor {
 public:
  std::vector<std::string> lines;

  void visit(Button& button) override {
    add("button", button, quoted(button.Caption) + when(button.Default, "default") + when(button.Cancel, "cancel"));
  }
  void visit(CheckBox& box) override { add("check", box, quoted(box.Caption) + when(box.Value, "checked")); }
  void visit(ComboBox& combo) override {
    std::string entries;
    for (const ComboBox::Item& item : combo.items()) entries += quoted(item.text);
    add("combo", combo, entries + unless(0, "chosen", combo.ListIndex() + 1));
  }
  void visit(DockStudio& bars) override {
    add("bars", bars, unless(1, "theme", bars.UseThemeColours));
    for (const BarDesign& bar : bars.bars()) {
      lines.push_back(kindOf(bar.kind) + quoted(bar.name) + names(bar.tools));
      describeTools(bars, bar.tools);
    }
  }
  void visit(FolderTreeview& folders) override { add("folders", folders, ""); }
  void visit(Frame& frame) override { add("frame", frame, quoted(frame.Caption)); }
  void visit(Label& label) override { add("label", label, quoted(label.Caption)); }
  void visit(ListView& list) override {
    std::string heads;
    for (const ListColumn& column : list.columns())
      heads += quoted(column.text) + (column.key == column.text ? "" : " key" + quoted(column.key));
    const ListStyle& style = list.style();
    add("list", list,
        heads + when(style.checkBoxes, "boxes") + when(style.multiSelect, "many") + when(style.editable, "editable"));
  }
  void visit(OptionButton& option) override {
    add("option", option, quoted(option.Caption) + when(option.selected(), "chosen"));
  }
  void visit(PictureBox& box) override {
    const std::string& picture = box.Picture;
    add("picture", box, picture.empty() ? "" : quoted(picture));
  }
  void visit(ProgressBarEx& bar) override {
    add("progress", bar, unless(0, "at", bar.Value()) + unless(100, "of", bar.Max()));
  }
  void visit(StatusBar& bar) override {
    std::string panels;
    for (std::size_t panel = 1; panel <= bar.count(); ++panel) panels += quoted(bar.PanelText(panel));
    add("status", bar, panels);
  }
  void visit(TabStrip& tabs) override {
    std::string captions;
    for (const std::string& caption : tabs.captions()) captions += quoted(caption);
    add("tabs", tabs, captions + " chosen " + std::to_string(tabs.SelectedTab));
  }
  void visit(TextBox& box) override {
    add("text", box,
        quoted(box.Text) + unless(0, "max", static_cast<long>(box.maxLength())) + when(box.Locked, "locked"));
  }
  void visit(Timer& timer) override {
    const std::string interval = std::to_string(timer.interval());
    lines.push_back("timer " + timer.name() + " " + interval + when(timer.Enabled, "running"));
  }
  void visit(VScrollBar& bar) override {
    add("scroll", bar,
        " " + std::to_string(bar.min()) + " to " + std::to_string(bar.max()) + " at " + std::to_string(bar.Value));
  }

  /// A control that no face has a widget for, and so comes to no visitor.
  void describeFaceless(const Control& control) {
    if (dynamic_cast<const CommonDialog*>(&control) != nullptr) add("dialog", control, "");
    const auto* images = dynamic_cast<const ImageList*>(&control);
    if (images == nullptr) return;
    std::string pictures;
    for (int number = 1; number <= images->Count(); ++number) pictures += quoted(images->Picture(number));
    add("images", control, pictures);
  }

 private:
  void add(const std::string& kind, const Control& control, const std::string& rest) {
    lines.push_back(kind + " " + control.name() + rest + when(!control.Enabled, "disabled") +
                    when(!control.Visible, "hidden"));
  }

  static std::string names(const std::vector<std::string>& tools) {
    std::string list;
    for (const std::string& tool : tools) list += " " + tool;
    return list;
  }

  /// A tool with what it opens; once, however often it is shown.
  void describeTools(DockStudio& bars, const std::vector<std::string>& tools) {
    for (const std::string& name : tools) {
      const Tool& tool = bars.tool(name);
      const std::string line = lineOf(tool);
      if (std::find(lines.begin(), lines.end(), line) != lines.end()) continue;
      lines.push_back(line);
      describeTools(bars, tool.design.children);
    }
  }

  static std::string lineOf(const Tool& tool) {
    const ToolDesign& design = tool.design;
    return kindOf(design.kind) + " " + design.name + quoted(isStatus(design.kind) ? tool.Text : design.caption) +
           when(!design.picture.empty(), "picture " + design.picture) +
           when(!design.shortcut.empty(), "key " + design.shortcut) + names(design.children) +
           when(!tool.Enabled, "off");
  }

  static bool isStatus(ToolKind kind) { return kind == ToolKind::Panel || kind == ToolKind::Progress; }

  static std::string kindOf(BarKind kind) {
    switch (kind) {
      case BarKind::Menu:
        return "menubar";
      case BarKind::Tools:
        return "toolbar";
      case BarKind::Status:
        return "statusbar";
    }
    return "";
  }

  static std::string kindOf(ToolKind kind) {
    switch (kind) {
      case ToolKind::Menu:
        return "menu";
      case ToolKind::Command:
        return "tool";
      case ToolKind::DropDown:
        return "opener";
      case ToolKind::Panel:
        return "panel";
      case ToolKind::Progress:
        return "meter";
      case ToolKind::Combo:
        return "drives";
    }
    return "";
  }
};

}  // namespace

std::vector<std::string> describe(const Form& form) {
  Describer describer;
  describer.lines.push_back("form " + form.name() + quoted(form.caption));
  for (Control* control : form.controls()) {
    control->accept(describer);
    describer.describeFaceless(*control);
  }
  return describer.lines;
}

}  // namespace trackloom::words
