#include "fakes/ScriptedDesk.h"

#include <array>
#include <catch2/catch.hpp>

#include "controls/Control.h"
#include "words/table/RunNotes.h"

namespace trackloom::fakes {

namespace {

/// What stands on the buttons, in the order of the answers.
constexpr std::array<const char*, 5> Answers{"OK", "Cancel", "Yes", "No", "Retry"};

}  // namespace

ScriptedDesk::ScriptedDesk() : table_(words::allBoxes()) {}

ScriptedDesk::~ScriptedDesk() = default;

void ScriptedDesk::announce(const std::string& form, std::function<void(Form&)> script, const std::string& owner) {
  expected_.push_back({form, BoxAnswer::Ok, std::move(script), owner});
}

bool ScriptedDesk::finished() const {
  return expected_.empty();
}

const MessageBox& ScriptedDesk::lastBox() const {
  return boxes.back();
}

void ScriptedDesk::expectBox(const std::string& title, BoxAnswer answer) {
  expected_.push_back({"box " + title, answer, {}});
}

void ScriptedDesk::expectFile(std::optional<HostPath> answer) {
  expected_.push_back({"file dialog", BoxAnswer::Ok, {}, {}, std::move(answer)});
}

void ScriptedDesk::expectFolder(std::optional<HostPath> answer) {
  expected_.push_back({"folder dialog", BoxAnswer::Ok, {}, {}, std::move(answer)});
}

ScriptedDesk::Expected ScriptedDesk::next(const std::string& what) {
  if (expected_.empty()) FAIL("Nobody expected: " << what);
  Expected expected = expected_.front();
  expected_.pop_front();
  if (expected.what != what) FAIL("Expected: " << expected.what << ", came: " << what);
  return expected;
}

void ScriptedDesk::tell(const std::string& line) const {
  if (onLine) onLine(line);
}

void ScriptedDesk::note(const std::string& line) {
  transcript.push_back(line);
  tell(line);
}

void ScriptedDesk::bringToFront(Form& form) {
  takeAway(form);
  shown_.push_back(form.name());
}

void ScriptedDesk::takeAway(Form& form) {
  std::erase(shown_, form.name());
}

void ScriptedDesk::show(Form& form) {
  note("show " + form.name());
  bringToFront(form);
}

void ScriptedDesk::showModal(Form& form, Form* owner) {
  note("modal " + form.name());
  bringToFront(form);
  const Expected expected = next(form.name());
  CHECK(form.name() + " of " + (owner == nullptr ? "nobody" : owner->name()) == form.name() + " of " + expected.owner);
  expected.script(form);
  if (form.visible()) FAIL("The script leaves " << form.name() << " open");
}

void ScriptedDesk::hide(Form& form) {
  note("hide " + form.name());
  takeAway(form);
}

void ScriptedDesk::discard(Form& form) {
  if (form.name() != "frmImages") note("unload " + form.name());
  takeAway(form);
}

void ScriptedDesk::repaint(Control& control) {
  note("repaint " + control.name());
}

void ScriptedDesk::repaint(Form& form) {
  note("repaint " + form.name());
}

BoxAnswer ScriptedDesk::show(const MessageBox& box) {
  boxes.push_back(box);
  judge(box);
  const BoxAnswer answer = next("box " + box.title).answer;
  tell("box " + box.title + ": " + Answers.at(static_cast<std::size_t>(answer)));
  if (whileBoxIsOpen) whileBoxIsOpen(box);
  return answer;
}

void ScriptedDesk::judge(const MessageBox& box) {
  const std::string over = shown_.empty() ? "nothing" : shown_.back();
  const std::string fault = words::faultOf(table_, box, over);
  if (fault.empty())
    words::note(words::noteOf(table_, box, over));
  else
    FAIL_CHECK(fault);
}

std::optional<HostPath> ScriptedDesk::choose(const FileDialog& dialog) {
  fileDialogs.push_back(dialog);
  return next("file dialog").file;
}

std::optional<HostPath> ScriptedDesk::browseForFolder(const std::string& prompt) {
  folderPrompts.push_back(prompt);
  return next("folder dialog").file;
}

}  // namespace trackloom::fakes
