#include "fakes/ScriptedDesk.h"

#include <catch2/catch.hpp>

#include "controls/Control.h"

namespace trackloom::fakes {

void ScriptedDesk::expectBox(const std::string& title, BoxAnswer answer) {
  expected_.push_back({"box " + title, answer, {}});
}

ScriptedDesk::Expected ScriptedDesk::next(const std::string& what) {
  if (expected_.empty()) FAIL("Nobody expected: " << what);
  Expected expected = expected_.front();
  expected_.pop_front();
  if (expected.what != what) FAIL("Expected: " << expected.what << ", came: " << what);
  return expected;
}

void ScriptedDesk::show(Form& form) {
  transcript.push_back("show " + form.name());
}

void ScriptedDesk::showModal(Form& form, Form*) {
  transcript.push_back("modal " + form.name());
  next(form.name()).script(form);
  if (form.visible()) FAIL("The script leaves " << form.name() << " open");
}

void ScriptedDesk::hide(Form& form) {
  transcript.push_back("hide " + form.name());
}

void ScriptedDesk::discard(Form& form) {
  if (form.name() != "frmImages") transcript.push_back("unload " + form.name());
}

void ScriptedDesk::repaint(Control& control) {
  transcript.push_back("repaint " + control.name());
}

BoxAnswer ScriptedDesk::show(const MessageBox& box) {
  boxes.push_back(box);
  const BoxAnswer answer = next("box " + box.title).answer;
  if (whileBoxIsOpen) whileBoxIsOpen(box);
  return answer;
}

}  // namespace trackloom::fakes
