#include "engines/ripper/OneTrackDrive.h"

#include <catch2/catch.hpp>
#include <utility>

namespace trackloom::engines::ripper {

OneTrackDrive::OneTrackDrive() = default;

OneTrackDrive::~OneTrackDrive() = default;

std::string OneTrackDrive::id() const {
  return "one track";
}

DriveNames OneTrackDrive::names() {
  return {"ACME", "One Track"};
}

void OneTrackDrive::take() {}

bool OneTrackDrive::discPresent() {
  return true;
}

std::optional<DiscContents> OneTrackDrive::contents() {
  return DiscContents{{{AudioBlocks, 0, 40}}, 40};
}

std::int16_t OneTrackDrive::maxSpeed() {
  return 4;
}

OneTrackRip::OneTrackRip(std::shared_ptr<ReadingDrive> drive)
    : rippers(ReadingDrives{std::move(drive)}, queue, patience, {HostPath(folder.path())}), ripper(rippers.create()) {
  ripper->listen(&heard);
  REQUIRE(ripper->SelectRipDrive(0));
  REQUIRE(ripper->ReadTOC());
  REQUIRE(ripper->QueueTrack(1, folder.host("a.wav"), 1));
  REQUIRE(ripper->StartRip());
}

OneTrackRip::~OneTrackRip() = default;

bool OneTrackRip::runToEnd() {
  return queue.runUntil([this] { return heard.ended(); });
}

}  // namespace trackloom::engines::ripper
