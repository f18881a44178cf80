#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/Machine.h"
#include "writing/WritingForms.h"

namespace trackloom {

/// A recording, or another disc operation, written down as a dialogue: each call and setting of the engine, each
/// window, box and pause, and each change in the status window and in the dialogs that are watched, in the order in
/// which they came. The layout has two tracks, the first of three blocks and the second of two.
class Dialogue : public fakes::Machine {
 public:
  explicit Dialogue(std::int16_t kind);
  ~Dialogue() override;
  Dialogue(const Dialogue&) = delete;
  Dialogue& operator=(const Dialogue&) = delete;

  /// False leaves out what the status window shows, for dialogues about the course of things.
  bool withStatus = true;

  void hear(std::string line);
  /// What has been heard since the last look.
  std::vector<std::string> heard() { return std::exchange(lines_, {}); }

  void record(const std::function<void(frmOptions&)>& choose = {});
  void step(int events = 1);
  /// The engine goes on as far as it can.
  void finish() { cdr1().finish(); }
  void tick(Timer& timer);
  void expectDone();
  void expectError();
  /// From now on each change in the form is heard, and no longer those in the one before.
  void watch(Form& form);
  frmStatus& status() { return program().forms().writing.frmStatus.get(); }

 private:
  void watchTimer(Timer& timer);
  std::string passOf(const std::string& call);
  std::string wordsOf(const std::string& line);

  std::vector<std::string> lines_;
  std::vector<Connection> watched_;
  std::vector<Connection> timers_;
};

}  // namespace trackloom
