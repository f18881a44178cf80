#include "help/HelpLaunch.h"

#include "help/HTMLHelp.h"
#include "model/Session.h"
#include "runtime/Files.h"

namespace trackloom {

namespace {

std::string helpFile(const Session& session) {
  return session.mod.AppFolder + "Trackloom.chm";
}

/// The program's one, on its file and its window.
HTMLHelp& readyHelp(Session& session) {
  if (!session.htmlHelp) session.htmlHelp = std::make_shared<HTMLHelp>(session);
  session.htmlHelp->CHMFile = helpFile(session);
  session.htmlHelp->HHWindow = "main";
  return *session.htmlHelp;
}

}  // namespace

bool HelpFileExists(Session& session) {
  if (FileExists(HostPath(helpFile(session)))) return true;
  session.ask({"Trackloom Help",
               "Unable to find the Trackloom Help file.  Please reinstall Trackloom to replace the Help system."});
  return false;
}

void showHelpTopic(Session& session, HelpTopic topic) {
  if (!HelpFileExists(session)) return;
  HTMLHelp& help = readyHelp(session);
  help.HHTopicID = topic;
  std::intptr_t noWindow = 0;
  help.HHDisplayTopicID(noWindow);
}

void showHelpContents(Session& session) {
  if (!HelpFileExists(session)) return;
  std::intptr_t noWindow = 0;
  readyHelp(session).HHDisplayContents(noWindow);
}

}  // namespace trackloom
