#include "shell/UnhandledError.h"

#include <string>

#include "model/Session.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"
#include "shell/Rescue.h"

namespace trackloom {

namespace {

std::string savedAs(const std::string& copy) {
  return "The open layout was saved as '" + copy + "'.";
}

std::string savedNowhere(const RuntimeError& reason) {
  return "The open layout could not be saved anywhere: " + reason.description() + ".";
}

/// Asks until a place takes the copy or the user gives the layout up; then there is none, as where none was needed.
std::string insistOnCopy(Session& session) {
  for (;;) {
    try {
      return rescueLayout(session);
    } catch (const RuntimeError& reason) {
      const std::string text =
          savedNowhere(reason) + ParagraphBreak + "Make room and press Retry, or press Cancel to give the layout up.";
      if (session.ask({"Trackloom", text, BoxButtons::RetryCancel, BoxIcon::Critical}) == BoxAnswer::Cancel) return {};
    }
  }
}

}  // namespace

void tellFatalError(Session& session, const RuntimeError& error) {
  session.ending = true;
  const std::string copy = insistOnCopy(session);
  std::string text = "Run-time error '" + std::to_string(error.number()) + "':" + ParagraphBreak + error.description();
  if (!copy.empty()) text += ParagraphBreak + savedAs(copy);
  session.ask({"Trackloom", text, BoxButtons::Ok, BoxIcon::Critical});
}

void rescueUnasked(Session& session) {
  session.ending = true;
  try {
    const std::string copy = rescueLayout(session);
    if (!copy.empty()) session.ports.process.tell(savedAs(copy));
  } catch (const RuntimeError& reason) {
    session.ports.process.tell(savedNowhere(reason));
  }
}

}  // namespace trackloom
