#include "model/OptionsFile.h"

#include "model/Session.h"
#include "runtime/Files.h"
#include "runtime/Statements.h"

namespace trackloom {

namespace {

HostPath optionsPath(const Session& session) {
  return HostPath(session.mod.AppFolder + "Options.dat");
}

}  // namespace

void readOptionsFile(Session& session) {
  session.mod.Options = OptionsRecord::decode(ReadStart(optionsPath(session), OptionsRecord::Size));
}

void writeOptionsFile(Session& session) {
  WriteStart(optionsPath(session), session.mod.Options.encode());
}

void LoadOptions(Session& session) {
  if (FileExists(optionsPath(session))) {
    skipOnError([&] { readOptionsFile(session); });
    return;
  }
  session.mod.Options = OptionsRecord::defaults();
  skipOnError([&] { writeOptionsFile(session); });
  Placement placement = session.frmListing().placement;
  placement.state = WindowState::Maximized;
  session.frmListing().placement = placement;
}

}  // namespace trackloom
