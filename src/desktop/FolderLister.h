#pragma once

#include "ports/EventQueue.h"
#include "ports/FolderListing.h"
#include "ports/Patience.h"
#include "runtime/Aside.h"

namespace trackloom {

/// Looks into each folder on a thread of its own, and tells at once all that it has found since the window's thread
/// last heard of it, so that a folder of many files costs that thread little, and one that dies keeps nothing to
/// itself.
class FolderLister final : public FolderListing {
 public:
  /// `events` outlives every listing that is held.
  FolderLister(EventQueue& events, Patience& patience)
      : events_(events), aside_([&patience](const Aside::Wait& wait) { patience.until(wait); }) {}

  Hold list(const HostPath& folder, std::vector<std::string> extensions, FolderReader& reader) override;
  Hold find(const HostPath& folder, std::function<void()> found) override;
  bool hasFile(const HostPath& file) override;
  std::string endOf(const HostPath& file, std::size_t length) override;

 private:
  EventQueue& events_;
  Aside aside_;
};

}  // namespace trackloom
