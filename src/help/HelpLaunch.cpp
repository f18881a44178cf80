#include "help/HelpLaunch.h"

#include "model/Session.h"
#include "runtime/Files.h"

namespace trackloom {

namespace {

std::string helpFile(const Session& session) {
  return session.mod.AppFolder + "Trackloom.chm";
}

void display(Session& session, HelpCommand command, std::intptr_t data) {
  if (!HelpFileExists(session)) return;
  session.ports.help.HtmlHelp(0, helpFile(session) + ">main", command, data);
}

}  // namespace

bool HelpFileExists(Session& session) {
  if (FileExists(HostPath(helpFile(session)))) return true;
  session.ask({"Trackloom Help",
               "Unable to find the Trackloom Help file.  Please reinstall Trackloom to replace the Help system."});
  return false;
}

void showHelpTopic(Session& session, HelpTopic topic) {
  display(session, HelpContext, topic);
}

void showHelpContents(Session& session) {
  display(session, HelpDisplayContents, 0);
}

}  // namespace trackloom
