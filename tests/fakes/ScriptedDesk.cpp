#include "fakes/ScriptedDesk.h"

#include <catch2/catch.hpp>

#include "controls/Control.h"
#include "words/table/RunNotes.h"

namespace trackloom::fakes {

void ScriptedDesk::expectBox(const std::string& title, BoxAnswer answer) {
  expected_.push_back({"box " + title, answer, {}});
}

void ScriptedDesk::expectFile(std::optional<HostPath> answer) {
  expected_.push_back({"file dialog", BoxAnswer::Ok, {}, {}, std::move(answer)});
}

ScriptedDesk::Expected ScriptedDesk::next(const std::string& what) {
  if (expected_.empty()) FAIL("Nobody expected: " << what);
  Expected expected = expected_.front();
  expected_.pop_front();
  if (expected.what != what) FAIL("Expected: " << expected.what << ", came: " << what);
  return expected;
}

void ScriptedDesk::bringToFront(Form& form) {
  takeAway(form);
  shown_.push_back(form.name());
}

void ScriptedDesk::takeAway(Form& form) {
  std::erase(shown_, form.name());
}

void ScriptedDesk::show(Form& form) {
  transcript.push_back("show " + form.name());
  bringToFront(form);
}

void ScriptedDesk::showModal(Form& form, Form* owner) {
  transcript.push_back("modal " + form.name());
  bringToFront(form);
  const Expected expected = next(form.name());
  CHECK(form.name() + " of " + (owner == nullptr ? "nobody" : owner->name()) == form.name() + " of " + expected.owner);
  expected.script(form);
  if (form.visible()) FAIL("The script leaves " << form.name() << " open");
}

void ScriptedDesk::hide(Form& form) {
  transcript.push_back("hide " + form.name());
  takeAway(form);
}

void ScriptedDesk::discard(Form& form) {
  if (form.name() != "frmImages") transcript.push_back("unload " + form.name());
  takeAway(form);
}

void ScriptedDesk::repaint(Control& control) {
  transcript.push_back("repaint " + control.name());
}

void ScriptedDesk::repaint(Form& form) {
  transcript.push_back("repaint " + form.name());
}

BoxAnswer ScriptedDesk::show(const MessageBox& box) {
  boxes.push_back(box);
  judge(box);
  const BoxAnswer answer = next("box " + box.title).answer;
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

}  // namespace trackloom::fakes
