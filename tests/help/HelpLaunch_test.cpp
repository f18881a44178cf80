#include "help/HelpLaunch.h"

#include <catch2/catch.hpp>

#include "fakes/Machine.h"
#include "help/HTMLHelp.h"

namespace trackloom {

using fakes::Machine;

TEST_CASE("E170: A topic opens in the window \"main\" of the help file, which has no owner") {
  Machine machine;
  machine.folder.write("Trackloom.chm", "help");
  machine.startQuietly();
  showHelpTopic(machine.session(), FilesTopic);
  REQUIRE(machine.help.calls.size() == 1);
  CHECK(machine.help.calls[0].target == machine.folder.path() + "/Trackloom.chm>main");
  CHECK(machine.help.calls[0].command == 15);
  CHECK(machine.help.calls[0].data == 70);
  CHECK(machine.help.calls[0].owner == 0);
}

TEST_CASE("The contents open in the window \"main\" of the help file, without an owner") {
  Machine machine;
  machine.folder.write("Trackloom.chm", "help");
  machine.startQuietly();
  showHelpContents(machine.session());
  REQUIRE(machine.help.calls.size() == 1);
  CHECK(machine.help.calls[0].target == machine.folder.path() + "/Trackloom.chm>main");
  CHECK(machine.help.calls[0].command == 1);
  CHECK(machine.help.calls[0].data == 0);
  CHECK(machine.help.calls[0].owner == 0);
}

TEST_CASE("The program has one help, made at its first use, and the contents leave the last topic standing") {
  Machine machine;
  machine.folder.write("Trackloom.chm", "help");
  machine.startQuietly();
  CHECK(machine.session().htmlHelp == nullptr);
  showHelpTopic(machine.session(), ErrorTopic);
  const HTMLHelp* first = machine.session().htmlHelp.get();
  showHelpContents(machine.session());
  CHECK(machine.session().htmlHelp.get() == first);
  CHECK(first->HHTopicID == 83);
  CHECK_FALSE(first->HHShowOnTop);
}

TEST_CASE("Without its file help tells that and asks the viewer for nothing") {
  Machine machine;
  machine.startQuietly();
  for (int time = 0; time < 2; ++time) {
    machine.desk.expectBox("Trackloom Help", BoxAnswer::Ok);
    CHECK_FALSE(HelpFileExists(machine.session()));
  }
  machine.desk.expectBox("Trackloom Help", BoxAnswer::Ok);
  showHelpTopic(machine.session(), SaveTopic);
  machine.desk.expectBox("Trackloom Help", BoxAnswer::Ok);
  showHelpContents(machine.session());
  CHECK(machine.help.calls.empty());
  CHECK(machine.session().htmlHelp == nullptr);
}

TEST_CASE("A folder of the help file's name is no help file") {
  Machine machine;
  machine.folder.write("Trackloom.chm/page.htm", "");
  machine.startQuietly();
  machine.desk.expectBox("Trackloom Help", BoxAnswer::Ok);
  CHECK_FALSE(HelpFileExists(machine.session()));
}

}  // namespace trackloom
