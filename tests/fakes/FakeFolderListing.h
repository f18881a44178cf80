#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "ports/FolderListing.h"

namespace trackloom::fakes {

/// Lists real folders at once, within the call, or word by word as a test lets it.
class FakeFolderListing final : public FolderListing {
 public:
  FakeFolderListing();
  ~FakeFolderListing() override;

  /// Folders answer only to step().
  bool slow = false;
  /// Files that are said not to be there.
  std::set<std::string> lost;

  Hold list(const HostPath& folder, std::vector<std::string> extensions, FolderReader& reader) override;
  Hold find(const HostPath& folder, std::function<void()> found) override;

  bool hasFile(const HostPath& file) override;

  std::string endOf(const HostPath& file, std::size_t length) override;

  /// Lets so many words be said, in the order in which they were asked for; those that nobody holds any more count, but
  /// are not heard.
  void step(int words = 1);

 private:
  using Held = std::shared_ptr<bool>;

  static Hold holdOf(const Held& held);
  void say(const Held& held, std::function<void()> word);

  std::deque<std::function<void()>> words_;
};

}  // namespace trackloom::fakes
