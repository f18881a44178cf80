#include "engines/ripper/RecorderDrive.h"

#include <chrono>
#include <thread>
#include <utility>

#include "engines/disc/Sense.h"

namespace trackloom::engines::ripper {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int tries = 5;
/// So often a recorder that hangs is asked whether it still does.
constexpr std::chrono::milliseconds whileHanging{10};
constexpr std::chrono::milliseconds mostAtOnce{20};

EngineError gone(const Recorder& recorder) {
  return deviceError(sense::noMedium, "the disc is no longer in " + recorder.id());
}

std::string discIn(Recorder& recorder) {
  const auto snapshot = recorder.look();
  if (!snapshot->disc) throw gone(recorder);
  return snapshot->disc->id;
}

/// The sectors of one disc, at the pace and with the mishaps that the recorder asks for.
class RecorderReading final : public DiscReading {
 public:
  RecorderReading(std::shared_ptr<Recorder> recorder, std::int16_t speed)
      : recorder_(std::move(recorder)),
        speed_(speed),
        held_(recorder_->holdDisc()),
        disc_(discIn(*recorder_)),
        conditions_(recorder_->readConditions(speed)) {}

  std::vector<std::byte> read(std::int32_t sector, std::int32_t count, const TroubleWatch& watch,
                              const std::stop_token& stop) override {
    if (stop.stop_requested()) throw Stopped();
    requireSameDisc();
    meet(sector, count, watch);
    auto sound = recorder_->read(sector, count);
    requireSameDisc();
    keepPace(count, stop);
    return sound;
  }

 private:
  void requireSameDisc() const {
    if (discIn(*recorder_) != disc_) throw gone(*recorder_);
  }
  void meet(std::int32_t sector, std::int32_t count, const TroubleWatch& watch) const;
  void keepPace(std::int32_t count, const std::stop_token& stop);

  std::shared_ptr<Recorder> recorder_;
  std::int16_t speed_;
  std::shared_ptr<void> held_;
  std::string disc_;
  ReadConditions conditions_;
  Clock::time_point due_ = Clock::now();
};

void RecorderReading::meet(std::int32_t sector, std::int32_t count, const TroubleWatch& watch) const {
  const auto within = [&](std::optional<std::int32_t> at) { return at && *at >= sector && *at < sector + count; };
  while (within(conditions_.hanging) && recorder_->readConditions(speed_).hanging == conditions_.hanging)
    std::this_thread::sleep_for(whileHanging);
  if (within(conditions_.slowed)) watch(ReadTrouble::SlowedDown, *conditions_.slowed);
  if (within(conditions_.jitter)) watch(ReadTrouble::Jitter, *conditions_.jitter);
  if (within(conditions_.retried)) watch(ReadTrouble::Retrying, *conditions_.retried);
  if (!within(conditions_.unreadable)) return;
  const std::int32_t bad = *conditions_.unreadable;
  for (int turn = 0; turn < tries; ++turn) watch(ReadTrouble::Retrying, bad);
  watch(ReadTrouble::RetryFailed, bad);
  throw deviceError(sense::readError, "sector " + std::to_string(bad) + " cannot be read");
}

void RecorderReading::keepPace(std::int32_t count, const std::stop_token& stop) {
  if (conditions_.sectorsPerSecond <= 0) return;
  due_ +=
      std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(count / conditions_.sectorsPerSecond));
  while (!stop.stop_requested() && Clock::now() < due_)
    std::this_thread::sleep_for(std::min<Clock::duration>(mostAtOnce, due_ - Clock::now()));
  if (stop.stop_requested()) throw Stopped();
}

}  // namespace

DriveNames RecorderDrive::names() {
  const DriveIdentity identity = recorder_->look()->identity;
  return {identity.vendor, identity.product};
}

void RecorderDrive::take() {
  if (!recorder_->take()) throw deviceError(sense::notReady, recorder_->id() + " cannot be taken into use");
}

bool RecorderDrive::discPresent() {
  return recorder_->look()->disc.has_value();
}

std::optional<DiscContents> RecorderDrive::contents() {
  const ReadConditions conditions = recorder_->readConditions(0);
  if (conditions.contentsFailure) throw *conditions.contentsFailure;
  const auto snapshot = recorder_->look();
  if (conditions.noContents || !snapshot->disc || snapshot->disc->tracks.empty()) return std::nullopt;
  DiscContents contents;
  for (const DiscTrack& track : snapshot->disc->tracks) {
    contents.tracks.push_back({track.kind, track.start, track.length, track.session, false});
    contents.leadOut = track.start + track.length;
  }
  contents.text = snapshot->disc->text;
  return contents;
}

std::int16_t RecorderDrive::maxSpeed() {
  return recorder_->look()->identity.maxWriteSpeed;
}

std::unique_ptr<DiscReading> RecorderDrive::begin(std::int16_t speed) {
  return std::make_unique<RecorderReading>(recorder_, speed);
}

}  // namespace trackloom::engines::ripper
