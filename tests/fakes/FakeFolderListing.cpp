#include "fakes/FakeFolderListing.h"

#include <utility>

#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom::fakes {

FakeFolderListing::FakeFolderListing() = default;

FakeFolderListing::~FakeFolderListing() = default;

FolderListing::Hold FakeFolderListing::list(const HostPath& folder, std::vector<std::string> extensions,
                                            FolderReader& reader) {
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

FolderListing::Hold FakeFolderListing::find(const HostPath& folder, std::function<void()> found) {
  const auto held = std::make_shared<bool>(true);
  if (FolderExists(folder)) say(held, std::move(found));
  return holdOf(held);
}

bool FakeFolderListing::hasFile(const HostPath& file) {
  return !lost.contains(file.text) && FileExists(file);
}

std::string FakeFolderListing::endOf(const HostPath& file, std::size_t length) {
  return ReadEnd(file, length);
}

void FakeFolderListing::step(int words) {
  for (; words > 0 && !words_.empty(); --words) {
    const auto word = std::move(words_.front());
    words_.pop_front();
    word();
  }
}

FolderListing::Hold FakeFolderListing::holdOf(const Held& held) {
  return {nullptr, [held](void*) { *held = false; }};
}

void FakeFolderListing::say(const Held& held, std::function<void()> word) {
  if (!slow) return word();
  words_.push_back([held, word = std::move(word)] {
    if (*held) word();
  });
}

}  // namespace trackloom::fakes
