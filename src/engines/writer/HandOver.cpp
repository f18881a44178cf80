#include "engines/writer/HandOver.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace trackloom::engines::writer {

namespace {

constexpr std::size_t mostReady = std::size_t{2} << 20;

}  // namespace

void HandOver::begin() {
  const std::lock_guard lock(mutex_);
  ended_ = false;
}

void HandOver::tellMeasured(Measured measured) {
  const std::lock_guard lock(mutex_);
  measured_ = std::move(measured);
  changed_.notify_all();
}

void HandOver::tellPrepared() {
  const std::lock_guard lock(mutex_);
  prepared_ = true;
  changed_.notify_all();
}

void HandOver::awaitWanted(std::int16_t track, const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait(lock, stop, [&] { return wanted_ >= track; })) throw Stopped();
}

void HandOver::put(Piece sectors, std::int16_t level, const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait(lock, stop, [&] { return ready_ < mostReady; })) throw Stopped();
  ready_ += sectors.size();
  level_ = level;
  chunks_.push_back(std::move(sectors));
  changed_.notify_all();
}

void HandOver::fail(std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  failure_ = std::move(failure);
  changed_.notify_all();
}

void HandOver::end() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  changed_.notify_all();
}

void HandOver::unlessAbandoned(const std::function<void()>& action) {
  const std::lock_guard lock(mutex_);
  if (!abandoned_) action();
}

Measured HandOver::measured(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  if (!changed_.wait(lock, stop, [&] { return measured_ || failure_; })) throw Stopped();
  if (!measured_) std::rethrow_exception(failure_);
  return *measured_;
}

void HandOver::awaitSectors(std::unique_lock<std::mutex>& lock, const std::stop_token& stop) {
  if (!changed_.wait(lock, stop, [&] { return !chunks_.empty() || failure_; })) throw Stopped();
  if (chunks_.empty()) std::rethrow_exception(failure_);
}

void HandOver::prepare(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  wanted_ = 0;
  changed_.notify_all();
  if (!changed_.wait(lock, stop, [&] { return prepared_ || failure_; })) throw Stopped();
  if (!prepared_) std::rethrow_exception(failure_);
}

void HandOver::want(std::int16_t track, const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  wanted_ = track;
  changed_.notify_all();
  awaitSectors(lock, stop);
}

void HandOver::take(std::span<std::byte> sectors, const std::stop_token& stop) {
  while (!sectors.empty()) {
    std::unique_lock lock(mutex_);
    awaitSectors(lock, stop);
    const Piece& chunk = chunks_.front();
    const std::size_t count = std::min(sectors.size(), chunk.size() - taken_);
    std::memcpy(sectors.data(), chunk.bytes().data() + taken_, count);
    sectors = sectors.subspan(count);
    taken_ += count;
    if (taken_ != chunk.size()) continue;
    ready_ -= chunk.size();
    taken_ = 0;
    chunks_.pop_front();
    changed_.notify_all();
  }
}

std::int16_t HandOver::level() {
  const std::lock_guard lock(mutex_);
  return level_;
}

void HandOver::abandon() {
  const std::lock_guard lock(mutex_);
  abandoned_ = true;
}

bool HandOver::awaitEnd(std::chrono::milliseconds limit, const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, stop, limit, [&] { return ended_; });
}

}  // namespace trackloom::engines::writer
