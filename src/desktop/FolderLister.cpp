#include "desktop/FolderLister.h"

#include <atomic>
#include <chrono>
#include <future>
#include <utility>

#include "desktop/Aside.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

using Clock = std::chrono::steady_clock;
using Word = std::function<void()>;

/// How long what was found may wait for more to come with it.
constexpr std::chrono::milliseconds Bunch{20};

/// What one asker has heard on the window's thread. That thread alone drops it, so nothing is heard behind that.
class Hearing {
 public:
  explicit Hearing(EventQueue& events) : events_(events) {}

  static void say(const std::shared_ptr<Hearing>& hearing, std::vector<Word> words) {
    hearing->events_.post([hearing, words = std::move(words)] {
      for (const Word& word : words)
        if (hearing->wanted()) word();
    });
  }
  static FolderListing::Hold hold(std::shared_ptr<Hearing> hearing) {
    return {nullptr, [hearing = std::move(hearing)](void*) { hearing->dropped_ = true; }};
  }
  bool wanted() const { return !dropped_; }

 private:
  EventQueue& events_;
  std::atomic<bool> dropped_ = false;
};

/// The looking thread's side of a listing.
class Bunches {
 public:
  explicit Bunches(std::shared_ptr<Hearing> hearing) : hearing_(std::move(hearing)) {}

  void add(Word word) {
    words_.push_back(std::move(word));
    if (Clock::now() - sent_ >= Bunch) send();
  }
  void send() {
    Hearing::say(hearing_, std::exchange(words_, {}));
    sent_ = Clock::now();
  }
  bool wanted() const { return hearing_->wanted(); }

 private:
  std::shared_ptr<Hearing> hearing_;
  std::vector<Word> words_;
  Clock::time_point sent_ = Clock::now();
};

void readFiles(const HostPath& folder, const std::string& extension, FolderReader& reader, Bunches& bunches) {
  for (const std::string& name : ListFiles(folder, extension)) {
    if (!bunches.wanted()) return;
    bunches.add([&reader, name] { reader.fileFound(name); });
    bunches.add([&reader, bytes = FileLength(HostPath(folder.text + name))] { reader.lengthFound(bytes); });
  }
}

void readFolder(const HostPath& folder, const std::vector<std::string>& extensions, FolderReader& reader,
                Bunches bunches) {
  try {
    for (const std::string& extension : extensions) readFiles(folder, extension, reader, bunches);
    bunches.add([&reader] { reader.allFound(); });
  } catch (const RuntimeError&) {
    bunches.add([&reader] { reader.listingFailed(); });
  }
  bunches.send();
}

}  // namespace

FolderListing::Hold FolderLister::list(const HostPath& folder, std::vector<std::string> extensions,
                                       FolderReader& reader) {
  const auto hearing = std::make_shared<Hearing>(events_);
  doAside([=, &reader] { readFolder(folder, extensions, reader, Bunches(hearing)); });
  return Hearing::hold(hearing);
}

FolderListing::Hold FolderLister::find(const HostPath& folder, std::function<void()> found) {
  const auto hearing = std::make_shared<Hearing>(events_);
  doAside([=] {
    if (FolderExists(folder)) Hearing::say(hearing, {found});
  });
  return Hearing::hold(hearing);
}

bool FolderLister::hasFile(const HostPath& file) {
  const auto answer = std::make_shared<std::promise<bool>>();
  auto is = answer->get_future();
  if (!doAside([=] { answer->set_value(FileExists(file)); })) return FileExists(file);
  patience_.until([&](std::chrono::milliseconds atMost) { return is.wait_for(atMost) == std::future_status::ready; });
  return is.get();
}

}  // namespace trackloom
