#pragma once

#include <catch2/catch.hpp>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "engines/ripper/RipWorld.h"

namespace trackloom::engines::ripper {

/// A drive with a disc of one track of 40 sectors, which a test reads in its own way.
class OneTrackDrive : public ReadingDrive {
 public:
  std::string id() const override { return "one track"; }
  DriveNames names() override { return {"ACME", "One Track"}; }
  void take() override {}
  bool discPresent() override { return true; }
  std::optional<DiscContents> contents() override { return DiscContents{{{AudioBlocks, 0, 40}}, 40}; }
  std::int16_t maxSpeed() override { return 4; }
};

/// The engine ripping the track of such a drive.
struct OneTrackRip {
  explicit OneTrackRip(std::shared_ptr<ReadingDrive> drive)
      : rippers(ReadingDrives{std::move(drive)}, queue, patience, {HostPath(folder.path())}), ripper(rippers.create()) {
    ripper->listen(&heard);
    REQUIRE(ripper->SelectRipDrive(0));
    REQUIRE(ripper->ReadTOC());
    REQUIRE(ripper->QueueTrack(1, folder.host("a.wav"), 1));
    REQUIRE(ripper->StartRip());
  }
  bool runToEnd() {
    return queue.runUntil([this] { return heard.ended(); });
  }

  const fakes::TempFolder folder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::RipperTranscript heard;
  DiscRippers rippers;
  std::unique_ptr<CDRipperX> ripper;
};

}  // namespace trackloom::engines::ripper
