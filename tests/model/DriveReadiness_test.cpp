#include "model/DriveReadiness.h"

#include <catch2/catch.hpp>

#include "fakes/LayoutMachine.h"

namespace trackloom {

using fakes::LayoutMachine;
using fakes::Machine;
using Lines = std::vector<std::string>;

TEST_CASE("A disc is measured for the kind of the layout, and is the scale of the meter") {
  for (const auto& [kind, blocks, bytes] : std::vector<std::tuple<std::int16_t, std::int32_t, std::int32_t>>{
           {AudioLayout, 1000, 2352000}, {Mp3Layout, 2000, 4096000}}) {
    LayoutMachine machine(kind);
    machine.engines.stage.disc->freeAudio = 1000;
    machine.engines.stage.disc->freeData = 2000;
    ReadDiscCapacity(machine.session());
    CHECK(machine.mod().DiscBlocks == blocks);
    CHECK(machine.mod().DiscBytes == bytes);
    CHECK(machine.window().Progress1.Maximum == blocks);
    CHECK(machine.mod().LayoutOpen);
  }
}

TEST_CASE("Both queues are empty before the disc is asked for, whichever the layout uses") {
  LayoutMachine machine(AudioLayout);
  machine.addTrack("a.mp3", 10);
  machine.cdr1().AddDataFile(DiscPath("\\a.mp3"), HostPath(machine.folder / "music/a.mp3"));
  machine.engines.stage.take();
  ReadDiscCapacity(machine.session());
  CHECK(machine.engines.stage.take() == Lines{"CDR1.ClearDataQueue", "CDR1.ClearAudioQueue", "CDR1.MediaLoaded"});
  CHECK(machine.cdr1().AudioQueueBlocks() == 0);
  CHECK(machine.cdr1().DataQueueBlocks() == 0);
}

TEST_CASE("While a full disc is told panel1 is blank already and the layout still open, which is over behind the box") {
  LayoutMachine machine(AudioLayout);
  machine.engines.stage.disc->freeAudio = 0;
  machine.desk.expectBox("No Available Space", BoxAnswer::Ok);
  machine.desk.whileBoxIsOpen = [&](const MessageBox&) {
    CHECK(machine.window().panel1.Text == std::string());
    CHECK(machine.mod().LayoutOpen);
    CHECK(machine.window().Progress1.Maximum == 0);
  };
  ReadDiscCapacity(machine.session());
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.mod().DiscBytes == 0);
}

TEST_CASE("A refused prompt leaves the figures of the disc before") {
  LayoutMachine machine(AudioLayout);
  machine.engines.stage.disc.reset();
  machine.desk.expectBox("No Media", BoxAnswer::Cancel);
  ReadDiscCapacity(machine.session());
  CHECK_FALSE(machine.mod().LayoutOpen);
  CHECK(machine.window().panel1.Text == std::string());
  CHECK(machine.mod().DiscBlocks == 359849);
  CHECK(machine.window().Progress1.Maximum == 359849);
}

}  // namespace trackloom
