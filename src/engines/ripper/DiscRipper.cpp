#include "engines/ripper/DiscRipper.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <limits>
#include <thread>
#include <tuple>
#include <utility>

#include "engines/disc/DriveId.h"
#include "engines/disc/Sense.h"
#include "engines/ground/Blocks.h"
#include "engines/ground/EngineSettings.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"

namespace trackloom::engines::ripper {

namespace {

/// A rip that was cancelled lets go of a drive that does not hang within it.
constexpr std::chrono::milliseconds moment{1500};
constexpr std::chrono::milliseconds tick{5};

std::string presentDate() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  return text.data();
}

/// What a drive's failure is to the program's logic.
RuntimeError asRuntimeError(const EngineError& error) {
  return {error.number(), error.words()};
}

}  // namespace

DiscRipper::DiscRipper(std::shared_ptr<RipperParts> parts) : parts_(std::move(parts)) {}

DiscRipper::~DiscRipper() {
  if (rip_) rip_->silence();
}

DrivePlace* DiscRipper::placeAt(std::int16_t drive) const {
  const auto place = static_cast<std::size_t>(drive);
  return drive >= 0 && place < parts_->drives->size() ? &(*parts_->drives)[place] : nullptr;
}

DriveNames DiscRipper::namesOf(std::int16_t drive) const {
  const DrivePlace* place = placeAt(drive);
  if (place == nullptr) return {};
  return parts_->aside([drive = place->drive] { return drive->names(); });
}

std::int16_t DiscRipper::DeviceCount() {
  constexpr std::size_t most = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::min(parts_->drives->size(), most));
}

std::string DiscRipper::DeviceLetter(std::int16_t drive) {
  if (placeAt(drive) == nullptr) return "";
  return driveLetter(static_cast<std::size_t>(drive));
}

std::string DiscRipper::DeviceVendor(std::int16_t drive) {
  return namesOf(drive).vendor;
}

std::string DiscRipper::DeviceModel(std::int16_t drive) {
  return namesOf(drive).product;
}

bool DiscRipper::isFree(const DrivePlace& place) const {
  return parts_->aside([use = place.use] {
    const auto end = std::chrono::steady_clock::now() + moment;
    while (!use.expired() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(tick);
    return use.expired();
  });
}

bool DiscRipper::SelectRipDrive(std::int16_t drive) {
  if (busy()) return false;
  contents_ = {};
  place_ = nullptr;
  lastError_ = sense::notReady;
  DrivePlace* place = placeAt(drive);
  if (place == nullptr) return false;
  lastError_ = sense::busy;
  if (!isFree(*place)) return false;
  try {
    parts_->aside([drive = place->drive] { drive->take(); });
  } catch (const EngineError& error) {
    lastError_ = error.number();
    return false;
  }
  place_ = place;
  lastError_ = 0;
  return true;
}

bool DiscRipper::DiscPresent() {
  if (busy()) return true;
  return place_ != nullptr && isFree(*place_) &&
         parts_->aside([drive = place_->drive] { return drive->discPresent(); });
}

bool DiscRipper::ReadTOC() {
  if (busy()) return false;
  contents_ = {};
  if (place_ == nullptr || !isFree(*place_)) return false;
  try {
    const auto contents = parts_->aside([drive = place_->drive] { return drive->contents(); });
    if (contents) contents_ = *contents;
    return contents.has_value();
  } catch (const EngineError& error) {
    throw asRuntimeError(error);
  }
}

const ContentsTrack* DiscRipper::trackAt(std::int16_t track) const {
  const auto place = static_cast<std::size_t>(track) - 1;
  return track >= 1 && place < contents_.tracks.size() ? &contents_.tracks[place] : nullptr;
}

std::int32_t DiscRipper::TrackStart(std::int16_t track) {
  const ContentsTrack* found = trackAt(track);
  return found == nullptr ? 0 : found->start;
}

std::int32_t DiscRipper::TrackLength(std::int16_t track) {
  const ContentsTrack* found = trackAt(track);
  return found == nullptr ? 0 : found->length;
}

bool DiscRipper::TrackIsAudio(std::int16_t track) {
  const ContentsTrack* found = trackAt(track);
  return found != nullptr && found->kind == AudioBlocks;
}

std::string DiscRipper::SectorsToTime(std::int32_t sectors) {
  return timeOfBlocks(sectors);
}

std::int16_t DiscRipper::MaxSpeed() {
  if (place_ == nullptr || busy() || !isFree(*place_)) return 0;
  return parts_->aside([drive = place_->drive] { return drive->maxSpeed(); });
}

void DiscRipper::SetSpeed(std::int16_t multiple) {
  if (!busy()) speed_ = multiple;
}

bool DiscRipper::AttachEncoder(Mp3Stream& encoder) {
  if (busy()) return false;
  encoder_ = &encoder;
  return true;
}

void DiscRipper::SetUseEncoder(bool on) {
  if (!busy()) useEncoder_ = on;
}

void DiscRipper::ClearQueue() {
  if (!busy()) queue_.clear();
}

bool DiscRipper::QueueTrack(std::int16_t track, const HostPath& path, std::int32_t callerNumber) {
  if (busy() || !TrackIsAudio(track)) return false;
  queue_.push_back({track, path, callerNumber});
  return true;
}

bool DiscRipper::discIsTheSame() const {
  try {
    return parts_->aside([drive = place_->drive] { return drive->contents(); }) == contents_;
  } catch (const EngineError&) {
    return false;
  }
}

TrackPlace DiscRipper::placeAmongAudio(const ContentsTrack& track) const {
  const auto isAudio = [](const ContentsTrack& other) { return other.kind == AudioBlocks; };
  const auto& tracks = contents_.tracks;
  const auto first = std::ranges::find_if(tracks, isAudio);
  const auto last = std::find_if(tracks.rbegin(), tracks.rend(), isAudio);
  return {first != tracks.end() && *first == track, last != tracks.rend() && *last == track};
}

RipRequest DiscRipper::request() const {
  RipRequest request;
  request.drive = place_->drive;
  request.speed = speed_;
  request.contents = contents_;
  for (const Queued& queued : queue_) {
    const ContentsTrack& place = *trackAt(queued.track);
    request.tracks.push_back({queued.track, queued.path, queued.callerNumber, place, placeAmongAudio(place)});
  }
  if (useEncoder_ && encoder_ != nullptr) {
    request.encoder = encoder_;
    request.kbps = encoder_->BitRate();
  }
  request.cores = parts_->settings.cores;
  return request;
}

RipFacts DiscRipper::facts() const {
  const DriveNames names = parts_->aside([drive = place_->drive] { return drive->names(); });
  const bool encoded = useEncoder_ && encoder_ != nullptr;
  return {Trim(names.vendor) + " " + Trim(names.product), encoded ? encoder_->Words() : "", presentDate()};
}

bool DiscRipper::StartRip() {
  if (busy() || queue_.empty() || place_ == nullptr || !isFree(*place_) || !discIsTheSame()) return false;
  RipRequest next = request();
  const RipFacts about = facts();
  std::tie(next.readOffset, next.log) = parts_->aside([folder = parts_->settings.programFolder, about] {
    return std::pair(readOffsetOf(folder, about.drive), loadEngineSettings(folder).ripLog);
  });
  const DriveUse use = std::make_shared<int>();
  place_->use = use;
  const auto& wakefulness = parts_->settings.wakefulness;
  rip_ = std::make_shared<Rip>(std::move(next), about, parts_->events, listener_);
  rip_->start(use, wakefulness ? wakefulness->stayAwake("A disc is being read") : nullptr);
  return true;
}

void DiscRipper::CancelRip() {
  if (rip_) rip_->cancel();
}

}  // namespace trackloom::engines::ripper
