#include "desktop/FolderLister.h"

#include <atomic>
#include <deque>
#include <mutex>
#include <system_error>
#include <utility>

#include "desktop/Aside.h"
#include "runtime/Files.h"
#include "runtime/RuntimeError.h"

namespace trackloom {

namespace {

using Word = std::function<void()>;

/// What one asker hears on the window's thread of what another thread finds. That thread alone drops it, so nothing is
/// heard behind that, and the queue may go with the asker. What was found since the last time is heard at once and
/// together.
class Hearing : public std::enable_shared_from_this<Hearing> {
 public:
  explicit Hearing(EventQueue& events) : events_(events) {}

  void say(Word word) {
    const std::lock_guard guard(mutex_);
    if (dropped_) return;
    words_.push_back(std::move(word));
    tell();
  }
  FolderListing::Hold hold() {
    return {nullptr, [self = shared_from_this()](void*) { self->drop(); }};
  }
  bool wanted() const { return !dropped_; }

 private:
  /// Waits for a word that is just being said.
  void drop() {
    const std::lock_guard guard(mutex_);
    dropped_ = true;
  }
  void hear() {
    for (std::size_t left = ready(); left > 0; --left)
      if (const Word word = next(); word && wanted()) word();
  }
  std::size_t ready() {
    const std::lock_guard guard(mutex_);
    told_ = false;
    return words_.size();
  }
  void tell() {
    if (!std::exchange(told_, true)) events_.post([self = shared_from_this()] { self->hear(); });
  }
  /// One by one, since a word may let events run, in which the next ones are heard.
  Word next() {
    const std::lock_guard guard(mutex_);
    if (words_.empty()) return nullptr;
    Word word = std::move(words_.front());
    words_.pop_front();
    if (!words_.empty()) tell();
    return word;
  }

  EventQueue& events_;
  std::atomic<bool> dropped_ = false;
  std::mutex mutex_;
  std::deque<Word> words_;
  /// An event is on its way that will hear all words.
  bool told_ = false;
};

void readFiles(const HostPath& folder, const std::string& extension, FolderReader& reader, Hearing& hearing) {
  for (const std::string& name : ListFiles(folder, extension)) {
    if (!hearing.wanted()) return;
    hearing.say([&reader, name] { reader.fileFound(name); });
    hearing.say([&reader, bytes = FileLength(HostPath(folder.text + name))] { reader.lengthFound(bytes); });
  }
}

void readFolder(const HostPath& folder, const std::vector<std::string>& extensions, FolderReader& reader,
                Hearing& hearing) {
  try {
    for (const std::string& extension : extensions) readFiles(folder, extension, reader, hearing);
    hearing.say([&reader] { reader.allFound(); });
  } catch (const RuntimeError&) {
    hearing.say([&reader] { reader.listingFailed(); });
  }
}

/// On this thread where the system has no other to spare: late, but not never.
void doAsideOrHere(const std::function<void()>& work) {
  if (!doAside(work)) work();
}

}  // namespace

FolderListing::Hold FolderLister::list(const HostPath& folder, std::vector<std::string> extensions,
                                       FolderReader& reader) {
  const auto hearing = std::make_shared<Hearing>(events_);
  doAsideOrHere([=, &reader] { readFolder(folder, extensions, reader, *hearing); });
  return hearing->hold();
}

FolderListing::Hold FolderLister::find(const HostPath& folder, std::function<void()> found) {
  const auto hearing = std::make_shared<Hearing>(events_);
  doAsideOrHere([=] {
    if (FolderExists(folder)) hearing->say(found);
  });
  return hearing->hold();
}

std::string FolderLister::endOf(const HostPath& file, std::size_t length) {
  try {
    return aside_([file, length] { return ReadEnd(file, length); });
  } catch (const std::system_error&) {
    return ReadEnd(file, length);
  }
}

bool FolderLister::hasFile(const HostPath& file) {
  try {
    return aside_([file] { return FileExists(file); });
  } catch (const std::system_error&) {
    return FileExists(file);
  }
}

}  // namespace trackloom
