#include "engines/ripper/DiscRippers.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "engines/ripper/DiscRipper.h"

namespace trackloom::engines::ripper {

namespace {

Lazily<std::vector<DrivePlace>> placesOf(Lazily<ReadingDrives> drives) {
  return Lazily<std::vector<DrivePlace>>([drives = std::move(drives)] {
    std::vector<DrivePlace> places;
    for (const auto& drive : *drives) places.push_back({drive, {}});
    return places;
  });
}

Aside::Until waiting(Patience& patience) {
  return [&patience](const Aside::Wait& wait) { patience.until(wait); };
}

}  // namespace

DiscRippers::DiscRippers(Lazily<ReadingDrives> drives, EventQueue& events, Patience& patience, RipperSettings settings)
    : parts_(new RipperParts{placesOf(std::move(drives)), events, std::move(settings), Aside(waiting(patience))}) {
  if (parts_->settings.cores == 0) parts_->settings.cores = std::max(1U, std::thread::hardware_concurrency());
}

std::unique_ptr<CDRipperX> DiscRippers::create() {
  return std::make_unique<DiscRipper>(parts_);
}

}  // namespace trackloom::engines::ripper
