#include "ripper/Hearing.h"

#include <utility>

#include "controls/ComboBox.h"
#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/ProgressBarEx.h"
#include "controls/StatusBar.h"

namespace trackloom {

Hearing::Hearing(std::string folder) : folder_(std::move(folder)) {}

Hearing::~Hearing() = default;

void Hearing::hear(std::string line) {
  replace(line, folder_ + "/", "");
  replace(line, "\r\n", "<line break>");
  lines_.push_back(line);
}

Hearing::Lines Hearing::heard() {
  return std::exchange(lines_, {});
}

void Hearing::watch(Form& watched) {
  watched_.clear();
  watched_.push_back(
      watched.changed.connect([this, &watched] { hear("  caption \"" + watched.caption.get() + "\""); }));
  for (Control* control : watched.controls())
    if (auto* list = dynamic_cast<ListView*>(control))
      watched_.push_back(list->listChanged.connect([this, list](const ListChange& change) { hearRow(*list, change); }));
    else
      watched_.push_back(control->changed.connect([this, control] { hear("  " + stateOf(*control)); }));
}

void Hearing::hearRow(const ListView& list, const ListChange& change) {
  if (change.kind == ListChange::Kind::Reset) hear("  " + list.name() + " empty");
  if (change.kind != ListChange::Kind::Inserted) return;
  std::string line = "  row \"" + list.Item(change.row).Text + "\"";
  for (int cell = 1; cell <= 3; ++cell) line += " " + list.SubItem(change.row, cell);
  hear(line);
}

void Hearing::replace(std::string& line, const std::string& text, const std::string& by) {
  for (std::size_t at = line.find(text); at != std::string::npos; at = line.find(text))
    line.replace(at, text.size(), by);
}

std::string Hearing::stateOf(const Control& control) {
  if (const auto* label = dynamic_cast<const Label*>(&control))
    return control.name() + " \"" + label->Caption.get() + "\"";
  if (const auto* bar = dynamic_cast<const StatusBar*>(&control))
    return control.name() + " \"" + bar->PanelText(1) + "\"";
  if (const auto* bar = dynamic_cast<const ProgressBarEx*>(&control))
    return control.name() + " " + std::to_string(bar->Value()) + "/" + std::to_string(bar->Max());
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control))
    return control.name() + " \"" + combo->Text() + "\"" + (control.Enabled ? "" : " off");
  return control.name() + (control.Enabled ? " on" : " off");
}

}  // namespace trackloom
