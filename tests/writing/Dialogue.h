#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/Machine.h"
#include "writing/WritingForms.h"

namespace trackloom {

/// A recording written down as a dialogue: each call of the engine, window, box and painted text in the order in which
/// they came, and behind each event of the engine what the status window shows by then. The layout has two tracks, the
/// first of three blocks and the second of two.
class Dialogue : public fakes::Machine {
 public:
  explicit Dialogue(std::int16_t kind) {
    startQuietly();
    newLayout(kind);
    addTrack("a.mp3", 3);
    addTrack("b.mp3", 2);
    engines.stage.onLine = [this](const std::string& call) { hear(call + stateAt(call)); };
    desk.onLine = [this](const std::string& line) {
      if (withStatus || !line.starts_with("repaint lbl")) hear(line + wordsOf(line));
    };
  }

  /// Leaves out how the status window looks, for dialogues about the course of things.
  bool withStatus = true;

  void hear(std::string line) {
    replace(line, folder.path() + "/music/", "");
    replace(line, "\r\n", "<line break>");
    lines_.push_back(line);
  }
  /// What has been heard since the last look.
  std::vector<std::string> heard() { return std::exchange(lines_, {}); }

  void record(const std::function<void(frmOptions&)>& choose = {}) {
    desk.expectForm<frmOptions>("frmOptions", [choose](frmOptions& form) {
      if (choose) choose(form);
      form.cmdOK.click();
    });
    click("Record");
    look();
  }
  void step(int events = 1) {
    while (events-- > 0) {
      cdr1().step();
      look();
    }
  }
  /// The engine goes on as far as it can.
  void finish() {
    while (cdr1().busy()) step();
  }
  void tick(Timer& timer) {
    hear("tick " + timer.name());
    timer.tick();
    look();
  }
  void expectDone() {
    desk.expectForm<frmDone>("frmDone", [this](frmDone& form) {
      hear("\"" + form.lblTypeInfo.Caption.get() + "\"");
      form.cmdClose.click();
    });
  }
  void expectError() {
    desk.expectForm<frmError>("frmError", [this](frmError& form) {
      hear("\"" + form.lblError.Caption.get() + "\"");
      form.cmdClose.click();
    });
  }
  frmStatus& status() { return program().forms().writing.frmStatus.get(); }

 private:
  static void replace(std::string& line, const std::string& text, const std::string& by) {
    for (std::size_t at = line.find(text); at != std::string::npos; at = line.find(text))
      line.replace(at, text.size(), by);
  }
  static std::string of(const ProgressBarEx& bar) {
    return std::to_string(bar.Value()) + "/" + std::to_string(bar.Max());
  }

  void look() {
    if (!withStatus || !program().forms().writing.frmStatus.exists()) return;
    const std::string shown = looks(status());
    if (shown != std::exchange(shown_, shown)) hear(shown);
  }
  static std::string looks(const frmStatus& form) {
    return "  [" + form.lblOperation.Caption.get() + "|" + (form.Frame2.Enabled ? "cache " : "no cache ") +
           of(form.pbCache) + "|track " + of(form.pbTrack) + "|overall " + of(form.pbOverall) + "|" +
           form.lblTracks.Caption.get() + "|" + form.lblBuffer.Caption.get() + "|" + form.lblDevice.Caption.get() +
           (form.cmdCancel.Enabled ? "|Cancel]" : "]");
  }
  std::string stateAt(const std::string& call) {
    if (call.starts_with("CDR1.CloseSession="))
      return std::string(" CloseDisc=") + (cdr1().CloseDisc() ? "True" : "False");
    if (call != "CDR1.StartWrite") return "";
    return std::string(cdr1().TestMode() ? " test" : " real") + ", phase " + std::to_string(mod().WritePhase) +
           (mod().WriteActive ? ", active" : ", idle");
  }
  /// What the user reads there at that moment.
  std::string wordsOf(const std::string& line) {
    if (line == "show frmStatus") return " \"" + status().lblSpeed.Caption.get() + "\"";
    if (line.starts_with("box ")) return " \"" + firstLine(desk.lastBox().text) + "\"";
    if (!line.starts_with("repaint lbl")) return "";
    for (const Control* control : status().controls())
      if (line == "repaint " + control->name())
        return " \"" + dynamic_cast<const Label&>(*control).Caption.get() + "\"";
    return "";
  }

  static std::string firstLine(const std::string& text) { return text.substr(0, text.find("\r\n")); }

  std::vector<std::string> lines_;
  std::string shown_;
};

}  // namespace trackloom
