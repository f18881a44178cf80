#pragma once

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <utility>

#include "Cost.h"
#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "ports/CDWriterEvents.h"
#include "ports/EventQueue.h"
#include "ports/Patience.h"

namespace trackloom::bench {

inline void run(const std::string& command) {
  if (std::system(("{ " + command + "; } > /dev/null 2>&1").c_str()) == 0) return;
  std::fprintf(stderr, "the writer bench: this failed: %s\n", command.c_str());
  std::exit(1);
}

/// Runs events on the thread that waits for the end of the write.
class Loop : public EventQueue, public Patience, public CDWriterEvents {
 public:
  void post(std::function<void()> event) override {
    const std::lock_guard lock(mutex_);
    events_.push_back(std::move(event));
    posted_.notify_one();
  }
  void runToTheEnd() {
    for (ended_ = false; !ended_;) {
      std::unique_lock lock(mutex_);
      posted_.wait(lock, [this] { return !events_.empty(); });
      const auto event = std::move(events_.front());
      events_.pop_front();
      lock.unlock();
      event();
    }
  }
  void until(const Wait& wait) override {
    while (!wait(std::chrono::hours(1))) continue;
  }
  void OnOperationComplete() override { ended_ = true; }
  void OnWriteError(std::int32_t code, std::int32_t number) override {
    std::fprintf(stderr, "the writer bench: the write failed: %d %d\n", code, number);
    std::exit(1);
  }

 private:
  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> events_;
  bool ended_ = false;
};

/// A folder with files to write and a virtual recorder to write them on; it goes with everything in it.
class Workplace {
 public:
  explicit Workplace(const std::string& name) : folder_(std::filesystem::temp_directory_path() / name) {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_ + "/files");
    engines::virtualrecorder::createVirtualRecorder(HostPath(folder_ + "/Virtual Recorder"));
  }
  ~Workplace() { std::filesystem::remove_all(folder_); }
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;

  const std::string& folder() const { return folder_; }
  HostPath file(int number) const { return HostPath(folder_ + "/files/" + std::to_string(number) + ".mp3"); }

  /// Writes what `queue` puts into the engine, and closes the disc.
  void writeDisc(const std::function<void(CDWriterXP&)>& queue) const {
    Loop loop;
    engines::writer::DiscWriters writers(engines::virtualrecorder::findVirtualRecorders(HostPath(folder_)),
                                         std::make_shared<engines::audio::AudioFiles>(), loop, loop,
                                         {150, HostPath(folder_ + "/scratch")});
    const auto writer = writers.create(loop);
    writer->SelectDrive(0);
    writer->SetCloseDisc(true);
    queue(*writer);
    writer->StartWrite();
    loop.runToTheEnd();
    writer->EjectDisc();
  }
  void clearShelf() const { run("rm -r '" + folder_ + "/Virtual Recorder/shelf/'* && sync"); }

 private:
  std::string folder_;
};

/// Files of 5 MB of noise each, on the disk and in the page cache.
inline void makeFiles(const Workplace& place, int count) {
  constexpr std::size_t fileBytes = 5'000'000;
  std::mt19937_64 random(1);
  std::string bytes(fileBytes, '\0');
  for (int file = 0; file < count; ++file) {
    for (char& byte : bytes) byte = static_cast<char>(random());
    std::ofstream(place.file(file).text, std::ios::binary) << bytes;
  }
  ::sync();
}

}  // namespace trackloom::bench
