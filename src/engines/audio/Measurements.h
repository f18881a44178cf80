#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "engines/audio/FrameSource.h"
#include "engines/ground/SourceFile.h"

namespace trackloom::engines::audio {

struct Measured {
  FileNote note;
  /// Nothing: refused.
  std::optional<SoundLength> length;
  std::optional<std::int32_t> blocks;
};

/// What was measured so far, by path. Safe from any thread. Whoever asks what is known already never waits; whoever
/// asks for what is being measured waits for that answer, which a file that hangs never gives; other files go on.
class Measurements {
 public:
  /// What is known of the file as this note has it, where that is proof enough; else what `measure` gives, which is
  /// kept. What it throws comes out.
  Measured find(const HostPath& path, const FileNote& note, Proof proof, const std::function<Measured()>& measure);

 private:
  struct Entry {
    std::mutex measuring;
    std::optional<Measured> measured;
  };

  Entry& entryOf(const HostPath& path);
  std::optional<Measured> answer(const Entry& entry, const FileNote& note, Proof proof);
  void keep(Entry& entry, const Measured& measured);

  std::mutex mutex_;  // of all but `measuring`
  std::unordered_map<std::string, Entry> entries_;
};

}  // namespace trackloom::engines::audio
