#include "fakes/FakeRipper.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <utility>

namespace trackloom::fakes {

namespace {

constexpr std::int32_t CannotCreate = 10;
constexpr std::int32_t Cancelled = 14;
/// The codes behind which nothing of a track is kept.
const std::set<std::int32_t> Fatal{8, 9, 10, 11, 12, 13};

bool spoils(const std::vector<std::int32_t>& codes) {
  return std::any_of(codes.begin(), codes.end(), [](std::int32_t code) { return Fatal.contains(code); });
}

}  // namespace

FakeRipper::FakeRipper(RipperStage& stage) : stage_(stage) {}

FakeRipper::~FakeRipper() = default;

bool FakeRipper::busy() const {
  return !steps_.empty();
}

void FakeRipper::listen(CDRipperEvents* listener) {
  events = listener;
}

std::string FakeRipper::DeviceLetter(std::int16_t drive) {
  return driveAt(drive).letter;
}

std::string FakeRipper::DeviceVendor(std::int16_t drive) {
  return driveAt(drive).vendor;
}

std::string FakeRipper::DeviceModel(std::int16_t drive) {
  return driveAt(drive).model;
}

std::int32_t FakeRipper::TrackStart(std::int16_t track) {
  return trackAt(track).start;
}

std::int32_t FakeRipper::TrackLength(std::int16_t track) {
  return trackAt(track).length;
}

bool FakeRipper::TrackIsAudio(std::int16_t track) {
  return trackAt(track).audio;
}

void FakeRipper::note(const std::string& call, const std::string& arguments) {
  stage_.note("CDRipperX1." + call, arguments);
}

void FakeRipper::add(std::function<void()> step) {
  steps_.push_back(std::move(step));
}

std::vector<std::int16_t> FakeRipper::queue() const {
  std::vector<std::int16_t> tracks;
  for (const Order& order : queue_) tracks.push_back(order.track);
  return tracks;
}

void FakeRipper::step() {
  const auto next = std::move(steps_.front());
  steps_.pop_front();
  next();
}

void FakeRipper::finish() {
  while (busy()) step();
}

const FakeRipDrive& FakeRipper::driveAt(std::int16_t drive) const {
  static const FakeRipDrive none{"", "", "", 0, true};
  const bool known = drive >= 0 && static_cast<std::size_t>(drive) < stage_.drives.size();
  return known ? stage_.drives[static_cast<std::size_t>(drive)] : none;
}

FakeRipTrack FakeRipper::trackAt(std::int16_t track) const {
  const bool known = track >= 1 && static_cast<std::size_t>(track) <= contents_.size();
  return known ? contents_[static_cast<std::size_t>(track - 1)] : FakeRipTrack{0, 0, false};
}

std::int16_t FakeRipper::DeviceCount() {
  note("DeviceCount");
  return static_cast<std::int16_t>(stage_.drives.size());
}

bool FakeRipper::SelectRipDrive(std::int16_t drive) {
  note("SelectRipDrive", "(" + std::to_string(drive) + ")");
  if (busy() || driveAt(drive).refuses) return false;
  selected_ = drive;
  return true;
}

std::int32_t FakeRipper::LastDriveError() {
  note("LastDriveError");
  return 4;
}

bool FakeRipper::DiscPresent() {
  note("DiscPresent");
  return stage_.disc.has_value();
}

bool FakeRipper::ReadTOC() {
  note("ReadTOC");
  if (busy()) return false;
  contents_.clear();
  if (!stage_.disc || !stage_.contentsReadable) return false;
  contents_ = *stage_.disc;
  return true;
}

std::int16_t FakeRipper::TrackCount() {
  note("TrackCount");
  return static_cast<std::int16_t>(contents_.size());
}

std::string FakeRipper::SectorsToTime(std::int32_t sectors) {
  char text[32];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d", sectors / 4500, sectors / 75 % 60, sectors % 75);
  return text;
}

std::int16_t FakeRipper::MaxSpeed() {
  note("MaxSpeed");
  return selected_ ? driveAt(*selected_).maxSpeed : std::int16_t{0};
}

void FakeRipper::SetSpeed(std::int16_t multiple) {
  note("SetSpeed", "(" + std::to_string(multiple) + ")");
}

bool FakeRipper::AttachEncoder(Mp3Stream& encoder) {
  note("AttachEncoder", "(" + std::to_string(encoder.BitRate()) + ")");
  return !busy();
}

void FakeRipper::SetUseEncoder(bool on) {
  note("UseEncoder", on ? "=True" : "=False");
}

void FakeRipper::ClearQueue() {
  note("ClearQueue");
  if (!busy()) queue_.clear();
}

bool FakeRipper::QueueTrack(std::int16_t track, const HostPath& path, std::int32_t callerNumber) {
  note("QueueTrack", "(" + std::to_string(track) + ", " + path.text + ", " + std::to_string(callerNumber) + ")");
  if (busy()) return false;
  queue_.push_back({track, path.text, callerNumber});
  return true;
}

bool FakeRipper::StartRip() {
  note("StartRip");
  if (busy() || queue_.empty() || !stage_.disc) return false;
  add([this] {
    // Whoever ordered the rip has gone meanwhile.
    if (events == nullptr) return steps_.clear();
    events->RipStarted();
  });
  for (const Order& order : queue_) rip(order);
  add([this] {
    if (events != nullptr) events->RipFinished();
  });
  return true;
}

void FakeRipper::tell(std::int32_t code, std::int32_t value) {
  if (events != nullptr) events->RipStatus(code, value);
}

void FakeRipper::tellOfTrack(std::int32_t code, std::int32_t value) {
  add([=, this] {
    if (!aside_.empty()) tell(code, value);
  });
}

void FakeRipper::rip(const Order& order) {
  const FakeRipTrack track = trackAt(order.track);
  const auto trouble = stage_.trouble.find(order.track);
  const std::vector<std::int32_t> codes =
      trouble == stage_.trouble.end() ? std::vector<std::int32_t>() : trouble->second;
  add([=, this] { begin(order); });
  tellOfTrack(RipProgress, track.start);
  tellOfTrack(RipProgress, track.start + track.length / 2);
  for (const std::int32_t code : codes) tellOfTrack(code, track.start + track.length / 2);
  if (!spoils(codes)) tellOfTrack(RipProgress, track.start + track.length);
  add([=, this] { end(order, !spoils(codes)); });
}

void FakeRipper::begin(const Order& order) {
  const FakeRipTrack track = trackAt(order.track);
  aside_ = order.path + "~";
  if (std::ofstream file(aside_, std::ios::binary); !(file << std::string(1000, 'x')).flush()) aside_.clear();
  if (events != nullptr) events->TrackStarted(HostPath(aside_), track.start, track.start + track.length, order.number);
  if (aside_.empty()) tell(CannotCreate, 0);
}

void FakeRipper::end(const Order& order, bool whole) {
  if (events != nullptr) events->TrackFinished();
  if (aside_.empty()) return;
  const std::string file = std::exchange(aside_, {});
  std::error_code kept;
  if (whole) std::filesystem::rename(file, order.path, kept);
  std::filesystem::remove(file, kept);
}

void FakeRipper::CancelRip() {
  note("CancelRip");
  if (!busy()) return;
  steps_.clear();
  add([this] { tell(Cancelled, 0); });
  add([this] {
    if (!aside_.empty()) std::filesystem::remove(std::exchange(aside_, {}));
    if (events != nullptr) events->RipFinished();
  });
}

}  // namespace trackloom::fakes
