#include "app/MachineDrives.h"

#include <algorithm>
#include <utility>

#include "engines/libburn/LibburnRecorders.h"
#include "engines/ripper/CdDrive.h"

namespace trackloom {

namespace {

using std::chrono::steady_clock;

engines::KnownDrive asKnown(const engines::SeenDrive& drive) {
  return {drive.id, drive.vendor, drive.product, !drive.writesDiscs};
}

std::vector<engines::KnownDrive> allOf(const std::vector<engines::SeenDrive>& real,
                                       const engines::RecorderList& virtualOnes) {
  std::vector<engines::KnownDrive> all;
  std::ranges::transform(real, std::back_inserter(all), [](const auto& drive) { return asKnown(drive); });
  std::ranges::copy(engines::asKnown(virtualOnes), std::back_inserter(all));
  return all;
}

}  // namespace

MachineDrives::MachineDrives(Around around)
    : around_(std::move(around)),
      end_(steady_clock::now() + around_.limit),
      survey_(engines::driveNodes(), engines::libburn::askDrive) {}

engines::PlacedRecorders MachineDrives::recorders() {
  if (!recorders_) find();
  return *recorders_;
}

void MachineDrives::find() {
  around_.patience.until(
      [this](std::chrono::milliseconds atMost) { return survey_.wait(atMost) || steady_clock::now() >= end_; });
  const auto [real, why] = survey_.result();
  const auto known =
      engines::withPresent(engines::loadKnownDrives(around_.programFolder), allOf(real, around_.virtualOnes));
  engines::saveKnownDrives(around_.programFolder, known);
  engines::RecorderList present = engines::libburn::recordersAmong(real, around_.mounts);
  std::ranges::copy(around_.virtualOnes, std::back_inserter(present));
  recorders_ = engines::inKnownOrder(known, present);
  found_.set_value(engines::ripper::drivesInOrder(known, present, engines::ripper::cdDrives(real)));
  if (around_.whenUnusable && !why.empty()) around_.whenUnusable(why);
  if (recorders_->recorders.empty())
    for (const std::string& words : why) whyNone_ += (whyNone_.empty() ? "" : "\n") + words;
}

}  // namespace trackloom
