#pragma once

#include <deque>
#include <functional>
#include <set>
#include <string>
#include <utility>

#include "ports/FolderListing.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom::fakes {

/// Lists real folders at once, within the call, or word by word as a test lets it.
class FakeFolderListing final : public FolderListing {
 public:
  /// Folders answer only to step().
  bool slow = false;
  /// Files that are said not to be there.
  std::set<std::string> lost;

  Hold list(const HostPath& folder, std::vector<std::string> extensions, FolderReader& reader) override {
    const auto held = std::make_shared<bool>(true);
    try {
      for (const std::string& extension : extensions)
        for (const std::string& name : ListFiles(folder, extension)) {
          say(held, [&reader, name] { reader.fileFound(name); });
          say(held, [&reader, bytes = FileLength(HostPath(folder.text + name))] { reader.lengthFound(bytes); });
        }
      say(held, [&reader] { reader.allFound(); });
    } catch (const RuntimeError&) {
      say(held, [&reader] { reader.listingFailed(); });
    }
    return holdOf(held);
  }
  Hold find(const HostPath& folder, std::function<void()> found) override {
    const auto held = std::make_shared<bool>(true);
    if (FolderExists(folder)) say(held, std::move(found));
    return holdOf(held);
  }

  bool hasFile(const HostPath& file) override { return !lost.contains(file.text) && FileExists(file); }

  std::string endOf(const HostPath& file, std::size_t length) override { return ReadEnd(file, length); }

  /// Lets so many words be said, in the order in which they were asked for; those that nobody holds any more count, but
  /// are not heard.
  void step(int words = 1) {
    for (; words > 0 && !words_.empty(); --words) {
      const auto word = std::move(words_.front());
      words_.pop_front();
      word();
    }
  }

 private:
  using Held = std::shared_ptr<bool>;

  static Hold holdOf(const Held& held) {
    return {nullptr, [held](void*) { *held = false; }};
  }
  void say(const Held& held, std::function<void()> word) {
    if (!slow) return word();
    words_.push_back([held, word = std::move(word)] {
      if (*held) word();
    });
  }

  std::deque<std::function<void()>> words_;
};

}  // namespace trackloom::fakes
