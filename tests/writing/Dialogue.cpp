#include "writing/Dialogue.h"

namespace trackloom {

namespace {

void replace(std::string& line, const std::string& text, const std::string& by) {
  for (std::size_t at = line.find(text); at != std::string::npos; at = line.find(text))
    line.replace(at, text.size(), by);
}

std::string inQuotes(const std::string& text) {
  return " \"" + text.substr(0, text.find("\r\n")) + "\"";
}

/// A bar whose maximum has fallen below its value, which follows at once.
bool isBetweenTwoStates(const Control& control) {
  const auto* bar = dynamic_cast<const ProgressBarEx*>(&control);
  return bar != nullptr && bar->Value() > bar->Max();
}

std::string stateOf(const Control& control) {
  if (const auto* label = dynamic_cast<const Label*>(&control)) return control.name() + inQuotes(label->Caption);
  if (const auto* box = dynamic_cast<const TextBox*>(&control)) return control.name() + inQuotes(box->Text);
  if (const auto* bar = dynamic_cast<const ProgressBarEx*>(&control))
    return control.name() + " " + std::to_string(bar->Value()) + "/" + std::to_string(bar->Max());
  if (dynamic_cast<const PictureBox*>(&control) != nullptr)
    return control.name() + (control.Visible ? " shown" : " hidden");
  return control.name() + (control.Enabled ? " on" : " off");
}

}  // namespace

Dialogue::Dialogue(std::int16_t kind) {
  startQuietly();
  newLayout(kind);
  addTrack("a.mp3", 3);
  addTrack("b.mp3", 2);
  engines.stage.onLine = [this](const std::string& call) { hear(call + passOf(call)); };
  for (Timer* timer : {&window().Timer1, &window().Timer2}) watchTimer(*timer);
  desk.onLine = [this](const std::string& line) {
    if (withStatus || !line.starts_with("repaint lbl")) hear(line + wordsOf(line));
  };
}

Dialogue::~Dialogue() = default;

void Dialogue::hear(std::string line) {
  replace(line, folder.path() + "/music/", "");
  replace(line, folder.path() + "/", "");
  replace(line, "\r\n", "<line break>");
  lines_.push_back(line);
}

void Dialogue::record(const std::function<void(frmOptions&)>& choose) {
  desk.expectForm<frmOptions>("frmOptions", [choose](frmOptions& form) {
    if (choose) choose(form);
    form.cmdOK.click();
  });
  click("Record");
}

void Dialogue::step(int events) {
  while (events-- > 0) cdr1().step();
}

void Dialogue::tick(Timer& timer) {
  hear("tick " + timer.name());
  timer.tick();
}

void Dialogue::expectDone() {
  desk.expectForm<frmDone>("frmDone", [this](frmDone& form) {
    hear("\"" + form.lblTypeInfo.Caption.get() + "\"");
    form.cmdClose.click();
  });
}

void Dialogue::expectError() {
  desk.expectForm<frmError>("frmError", [this](frmError& form) {
    hear("\"" + form.lblError.Caption.get() + "\"");
    form.cmdClose.click();
  });
}

void Dialogue::watch(Form& form) {
  watched_.clear();
  for (Control* control : form.controls())
    watched_.push_back(control->changed.connect([this, control] {
      if (!isBetweenTwoStates(*control)) hear("  " + stateOf(*control));
    }));
}

void Dialogue::watchTimer(Timer& timer) {
  timers_.push_back(timer.changed.connect([this, &timer] { hear(stateOf(timer)); }));
}

std::string Dialogue::passOf(const std::string& call) {
  if (call != "CDR1.StartWrite") return "";
  return " phase " + std::to_string(mod().WritePhase) + (mod().WriteActive ? ", active" : ", idle");
}

/// What the user reads there at that moment.
std::string Dialogue::wordsOf(const std::string& line) {
  if (line == "repaint frmStatus") return inQuotes(status().lblOperation.Caption);
  if (line == "show frmStatus") {
    if (withStatus) watch(status());
    return inQuotes(status().lblSpeed.Caption) + ", " + stateOf(status().Frame2);
  }
  return line.starts_with("box ") ? inQuotes(desk.lastBox().text) : "";
}

}  // namespace trackloom
