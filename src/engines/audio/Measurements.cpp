#include "engines/audio/Measurements.h"

namespace trackloom::engines::audio {

namespace {

bool isEnough(const std::optional<SoundLength>& length, Proof proof) {
  return !length || length->proven || proof == Proof::Header;
}

}  // namespace

Measured Measurements::find(const HostPath& path, const FileNote& note, Proof proof,
                            const std::function<Measured()>& measure) {
  Entry& entry = entryOf(path);
  if (const auto known = answer(entry, note, proof)) return *known;
  const std::lock_guard lock(entry.measuring);
  // Who had the lock before may have measured just this.
  if (const auto known = answer(entry, note, proof)) return *known;
  const Measured measured = measure();
  keep(entry, measured);
  return measured;
}

// Entries stay where they are when others come, so a reference outlives the lock.
Measurements::Entry& Measurements::entryOf(const HostPath& path) {
  const std::lock_guard lock(mutex_);
  return entries_[path.text];
}

std::optional<Measured> Measurements::answer(const Entry& entry, const FileNote& note, Proof proof) {
  const std::lock_guard lock(mutex_);
  const auto& known = entry.measured;
  return known && known->note == note && isEnough(known->length, proof) ? known : std::nullopt;
}

void Measurements::keep(Entry& entry, const Measured& measured) {
  const std::lock_guard lock(mutex_);
  entry.measured = measured;
}

}  // namespace trackloom::engines::audio
