// Changes the sources of discs at random moments while they are written, and looks at each disc that was told as
// complete: it has to hold one content of its source from the first byte to the last.
// Usage: change-sources <discs>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <thread>

#include "engines/virtual/VirtualRecorders.h"
#include "engines/writer/DiscWriters.h"
#include "fakes/FakeEventQueue.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"
#include "fakes/WriterTranscript.h"

namespace {

namespace fs = std::filesystem;
using namespace trackloom;
using namespace trackloom::engines;

constexpr std::size_t SectorBytes = 2352;
constexpr std::size_t SoundBytes = 4000 * SectorBytes;

/// A source in its two contents of one size, and what either makes of a disc.
struct Kind {
  std::string name;
  bool data = false;
  std::string bytes[2];
  std::string onDisc[2];
};

std::string decoded(const HostPath& path) {
  const auto stream = audio::AudioFiles().open(path);
  std::string sectors(static_cast<std::size_t>(stream->blocks()) * SectorBytes, '\0');
  stream->read(std::as_writable_bytes(std::span(sectors)));
  return sectors;
}

std::string mp3(const fakes::TempFolder& folder, const std::string& sound) {
  const std::string wav = folder.file("sound.wav", fakes::wav(sound)).text;
  if (std::system(("lame --quiet -b 128 '" + wav + "' '" + wav + ".mp3'").c_str()) != 0) std::exit(2);
  return folder.read("sound.wav.mp3");
}

Kind kindOf(const fakes::TempFolder& folder, const std::string& name) {
  Kind kind{.name = name, .data = name == "data", .bytes = {}, .onDisc = {}};
  for (std::size_t at : {0U, 1U}) {
    const std::string sound = fakes::noise(SoundBytes, at + 1);
    kind.bytes[at] = name == "mp3" ? mp3(folder, sound) : name == "wav" ? fakes::wav(sound) : sound;
    kind.onDisc[at] = kind.data ? sound : decoded(folder.file("reference", kind.bytes[at]));
  }
  return kind;
}

void overwrite(const std::string& path, const std::string& bytes) {
  const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  for (std::size_t at = 0; at < bytes.size(); at += 65'536) {
    const std::size_t count = std::min<std::size_t>(65'536, bytes.size() - at);
    if (::pwrite(file.get(), bytes.data() + at, count, static_cast<off_t>(at)) < 0) return;
  }
}

/// One of five things that people and programs do to files.
void harm(const std::string& path, const std::string& other, unsigned way) {
  std::error_code ignored;
  const auto time = fs::last_write_time(path, ignored);
  if (way == 0) fs::resize_file(path, other.size() / 2, ignored);
  if (way == 1) overwrite(path, other);
  if (way == 2) {
    overwrite(path, other);
    fs::last_write_time(path, time, ignored);
  }
  if (way == 3) {
    std::ofstream(path + ".new", std::ios::binary) << other;
    fs::rename(path + ".new", path, ignored);
  }
  if (way == 4) fs::remove(path, ignored);
}

class Attack {
 public:
  Attack() {
    for (const std::string& recorder : recorders_) virtualrecorder::createVirtualRecorder(folder_.host(recorder));
    folder_.write(recorders_[1] + "/recorder.ini", "[recorder]\nmaximumSpeed = 72\nrealTimePacing = on\n");
    for (const bool verified : {false, true}) {
      engines_.push_back(std::make_unique<writer::DiscWriters>(
          virtualrecorder::findVirtualRecorders(HostPath(folder_.path())), std::make_shared<audio::AudioFiles>(),
          queue_, patience_, writer::WriterSettings{150, folder_.host("scratch"), verified}));
      writers_.push_back(engines_.back()->create(heard_));
    }
    for (const char* name : {"wav", "mp3", "data"}) kinds_.push_back(kindOf(folder_, name));
  }

  void spoilOne() {
    const Kind& kind = kinds_[random_() % kinds_.size()];
    const HostPath path = folder_.file("source", kind.bytes[0]);
    writer_ = writers_[random_() % writers_.size()].get();
    auto drive = static_cast<std::int16_t>(random_() % recorders_.size());
    if (!writer_->SelectDrive(drive)) std::exit(2);
    recorder_ = folder_.path() + "/" + recorders_[static_cast<std::size_t>(drive)];
    queue(kind, path);
    const unsigned longest = drive == 0 ? 80'000 : 600'000;
    std::thread other([&kind, path, delay = random_() % longest, way = random_() % 5] {
      std::this_thread::sleep_for(std::chrono::microseconds(delay));
      harm(path.text, kind.bytes[1], static_cast<unsigned>(way));
    });
    for (int copies = random_() % 4 == 0 ? 3 : 1; copies > 0; --copies) write(kind);
    other.join();
  }

  int complete = 0;
  int refused = 0;
  int wrong = 0;

 private:
  void queue(const Kind& kind, const HostPath& path) {
    writer_->ClearAudioQueue();
    writer_->ClearDataQueue();
    writer_->ImportLastSession(true);
    writer_->SetDiscMode(kind.data ? DataBlocks : AudioBlocks);
    if (kind.data)
      writer_->AddDataFile(DiscPath("\\source"), path);
    else
      writer_->AddAudioTrack(path, 1);
  }

  void write(const Kind& kind) {
    heard_.lines.clear();
    writer_->StartWrite();
    if (!queue_.runUntil([this] { return heard_.ended(); })) std::exit(3);
    if (heard_.lines.back() == "OnOperationComplete") {
      ++complete;
      if (!holdsOneContent(kind)) ++wrong;
    } else {
      ++refused;
    }
    writer_->EjectDisc();
    fs::remove_all(recorder_ + "/shelf");
  }

  bool holdsOneContent(const Kind& kind) const {
    const auto disc = fs::directory_iterator(recorder_ + "/tray")->path();
    const std::string content = fakes::contentOf(disc / (kind.data ? "disc.iso" : "disc.bin"));
    return content.find(kind.onDisc[0]) != std::string::npos || content.find(kind.onDisc[1]) != std::string::npos;
  }

  fakes::TempFolder folder_;
  fakes::FakeEventQueue queue_;
  fakes::FakePatience patience_;
  fakes::WriterTranscript heard_;
  /// One that goes as fast as the computer, and one that takes its time.
  const std::vector<std::string> recorders_{"Virtual Recorder", "Virtual Recorder 2"};
  /// With discs that are read back and without.
  std::vector<std::unique_ptr<writer::DiscWriters>> engines_;
  std::vector<std::unique_ptr<CDWriterXP>> writers_;
  CDWriterXP* writer_ = nullptr;
  std::string recorder_;
  std::vector<Kind> kinds_;
  std::mt19937 random_{std::random_device{}()};
};

}  // namespace

int main(int argc, char** argv) {
  const int discs = argc > 1 ? std::atoi(argv[1]) : 50;
  Attack attack;
  for (int disc = 0; disc < discs; ++disc) attack.spoilOne();
  std::cout << "attack: " << discs << " sources changed, " << attack.complete << " discs told as complete, "
            << attack.refused << " as failed, " << attack.wrong << " wrong ones told as complete\n";
  return attack.wrong == 0 && attack.complete != 0 && attack.refused != 0 ? 0 : 1;
}
