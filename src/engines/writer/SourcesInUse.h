#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>

#include "runtime/Paths.h"

namespace trackloom::engines::writer {

/// Which files the reading threads of an engine have in their hands. A file that never answers keeps its thread, long
/// after its write was cancelled, and this is how a later write that needs it knows. Safe from any thread.
class SourcesInUse {
 public:
  /// The file is in use for as long as this lives.
  class Use {
   public:
    Use(std::shared_ptr<SourcesInUse> all, const HostPath& file);
    ~Use();
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

   private:
    std::shared_ptr<SourcesInUse> all_;
    std::multiset<std::string>::iterator place_;
  };

  /// Waits until nobody uses these files: nothing, or the first that is still in use after that long. Throws Stopped.
  std::optional<HostPath> awaitFree(std::span<const HostPath> files, std::chrono::milliseconds limit,
                                    const std::stop_token& stop);

 private:
  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::multiset<std::string> files_;
};

}  // namespace trackloom::engines::writer
