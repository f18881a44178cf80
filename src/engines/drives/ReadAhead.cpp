#include "engines/drives/ReadAhead.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "runtime/Paths.h"
#include "runtime/Text.h"

namespace trackloom::engines::drives {

namespace {

/// Entries that may lie ready without having been asked for.
constexpr std::size_t MostAhead = 50'000;

struct Folder {
  std::string path;
  bool read = false;
  std::vector<FindRecord> entries = {};
};

}  // namespace

/// The folders of the walk from the next one that will be asked for: first those that are read or being read, then
/// those that wait. Folders join it in the walk's order, whichever of them was read first.
class ReadAhead::Line {
 public:
  Line(std::string root, Reader reader) : reader_(std::move(reader)) { folders_.push_back({std::move(root)}); }

  /// The work of one thread, until there is nothing more to read or to read for.
  void work() {
    while (Folder* folder = awaitWork()) put(*folder, reader_(folder->path));
  }

  void stop() {
    {
      const std::lock_guard lock(mutex_);
      stopped_ = true;
    }
    changed_.notify_all();
  }

  /// Those of the next folder, which must have been read.
  std::vector<FindRecord> take() {
    std::vector<FindRecord> entries = takeNext().entries;
    changed_.notify_all();
    return entries;
  }

  bool isNext(const std::string& path) {
    const std::lock_guard lock(mutex_);
    return !folders_.empty() && folders_.front().path == path;
  }

  bool awaitNext(std::chrono::milliseconds atMost) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, atMost, [this] { return folders_.front().read; });
  }

  std::vector<FindRecord> readHere(const std::string& path) const { return reader_(path); }

 private:
  bool isOver() const { return stopped_ || queued_ == folders_.size(); }
  bool hasWork() const { return begun_ != folders_.size() && ready_ < MostAhead; }

  /// The folder that the thread is to read; null: there will be none.
  Folder* awaitWork() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isOver() || hasWork(); });
    return isOver() ? nullptr : &folders_[begun_++];
  }

  void put(Folder& folder, std::vector<FindRecord> entries) {
    const std::lock_guard lock(mutex_);
    ready_ += entries.size();
    folder.entries = std::move(entries);
    folder.read = true;
    queueFoldersOfRead();
    changed_.notify_all();
  }

  Folder takeNext() {
    const std::lock_guard lock(mutex_);
    Folder next = std::move(folders_.front());
    folders_.pop_front();
    --begun_;
    --queued_;
    ready_ -= next.entries.size();
    return next;
  }

  void queueFoldersOfRead() {
    for (; queued_ != folders_.size() && folders_[queued_].read; ++queued_) {
      const Folder& folder = folders_[queued_];
      for (const FindRecord& record : folder.entries)
        if ((record.attributes & FindRecord::DirectoryAttribute) != 0)
          folders_.push_back({EnsureTrailingSep(folder.path + record.name.substr(0, record.name.find('\0')))});
    }
  }

  const Reader reader_;
  std::mutex mutex_;
  std::condition_variable changed_;
  /// Its elements stay where they are while others join and leave.
  std::deque<Folder> folders_;
  /// How many of them some thread has taken.
  std::size_t begun_ = 0;
  /// How many of them have been read and have all their folders in the line.
  std::size_t queued_ = 0;
  /// Entries of folders that were read and not yet asked for.
  std::size_t ready_ = 0;
  bool stopped_ = false;
};

namespace {

/// Enough to keep the disk and most processors at work; more would only wait for the same locks.
int threadsToUse() {
  return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 2U, 4U));
}

}  // namespace

ReadAhead::ReadAhead(std::string root, Reader reader, Patience& patience)
    : line_(std::make_shared<Line>(std::move(root), std::move(reader))), patience_(patience) {
  try {
    for (int thread = 0; thread < threadsToUse(); ++thread) {
      std::thread([line = line_] { line->work(); }).detach();
      alone_ = false;
    }
  } catch (const std::system_error&) {
    // As many threads as the system has to spare; without any the caller reads.
    return;
  }
}

ReadAhead::~ReadAhead() {
  line_->stop();
}

std::vector<FindRecord> ReadAhead::entries(const std::string& folder) {
  if (alone_ || !line_->isNext(folder)) return line_->readHere(folder);
  patience_.until([this](std::chrono::milliseconds atMost) { return line_->awaitNext(atMost); });
  return line_->take();
}

}  // namespace trackloom::engines::drives
