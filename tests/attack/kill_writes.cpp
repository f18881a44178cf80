// Kills a process that records a disc, at random moments, and looks at all discs: those on the shelf are as they were,
// and the one in the tray is as it was, or spoilt with all that was recorded before, or finished and right.
// Usage: kill-writes <kills>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
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
using Clock = std::chrono::steady_clock;

/// The files of a folder with their bytes, by their paths in it.
using Content = std::map<std::string, std::string>;

Content contentOf(const fs::path& folder) {
  Content content;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    content[fs::relative(entry.path(), folder).string()] =
        entry.is_regular_file() ? fakes::contentOf(entry.path()) : "";
  return content;
}

/// A recording that is killed: what lies in the tray before it, and how it is written.
struct Recording {
  std::string name;
  bool data = false;
  bool behindAnother = false;
  bool cached = false;
};

const Recording recordings[] = {{"an audio disc"},
                                {"audio tracks behind others", false, true, false},
                                {"a cached audio disc", false, false, true},
                                {"a data disc", true},
                                {"a second data session", true, true, false}};

/// One engine at the recorder of a folder, for as long as a process of its own lives.
class Engine {
 public:
  explicit Engine(const fakes::TempFolder& folder)
      : folder_(folder),
        writers_(virtualrecorder::findVirtualRecorders(HostPath(folder.path())), std::make_shared<audio::AudioFiles>(),
                 queue_, patience_, {150, folder.host("scratch")}),
        writer_(writers_.create(heard_)) {
    if (!writer_->SelectDrive(0)) ::_exit(2);
  }

  /// False: the write failed.
  bool write(const Recording& recording, const std::string& source) {
    writer_->SetDiscMode(recording.data ? DataBlocks : AudioBlocks);
    writer_->SetCacheAudioTracks(recording.cached);
    writer_->SetCloseSession(recording.data);
    writer_->ImportLastSession(true);
    if (recording.data)
      writer_->AddDataFile(DiscPath("\\" + source), folder_.host(source));
    else
      writer_->AddAudioTrack(folder_.host(source), 1);
    writer_->StartWrite();
    queue_.runUntil([this] { return heard_.ended(); });
    return heard_.lines.back() == "OnOperationComplete";
  }

 private:
  const fakes::TempFolder& folder_;
  fakes::FakeEventQueue queue_;
  fakes::FakePatience patience_;
  fakes::WriterTranscript heard_;
  writer::DiscWriters writers_;
  std::unique_ptr<CDWriterXP> writer_;
};

class Attack {
 public:
  Attack() {
    folder_.file("first", fakes::wav(fakes::noise(300 * 2352, 1)));
    folder_.file("second", fakes::wav(fakes::noise(6000 * 2352, 2)));
  }

  void killOne(const Recording& recording) {
    layOut(recording);
    const Content shelf = contentOf(recorder() / "shelf");
    const Content before = contentOf(recorder() / "tray");
    const Content after = finished(recording, before);
    const auto longest = static_cast<std::uint64_t>(duration_.count()) + 1;
    const pid_t process = inProcess([&] { return Engine(folder_).write(recording, "second"); });
    std::this_thread::sleep_for(std::chrono::microseconds(random_() % longest));
    ::kill(process, SIGKILL);
    ::waitpid(process, nullptr, 0);
    judge(recording, shelf, before, after);
  }

  int asBefore = 0;
  int spoilt = 0;
  int complete = 0;
  int wrong = 0;

 private:
  fs::path recorder() const { return folder_ / "Virtual Recorder"; }
  fs::path disc() const { return fs::directory_iterator(recorder() / "tray")->path(); }

  static pid_t inProcess(const std::function<bool()>& work) {
    const pid_t process = ::fork();
    if (process == 0) ::_exit(work() ? 0 : 1);
    return process;
  }
  void mustSucceed(const std::function<bool()>& work) const {
    int status = 1;
    ::waitpid(inProcess(work), &status, 0);
    if (status != 0) std::exit(2);
  }

  /// A shelf with a recorded and a blank disc, and the disc in the tray that the recording needs.
  void layOut(const Recording& recording) {
    fs::remove_all(recorder());
    virtualrecorder::createVirtualRecorder(HostPath(recorder().string()));
    const Recording first{"the first", recording.data, false, false};
    mustSucceed([&] { return Engine(folder_).write(first, "first"); });
    fs::copy(disc(), recorder() / "shelf/Recorded", fs::copy_options::recursive);
    if (recording.behindAnother) return;
    fs::remove_all(disc());
    fs::create_directory(recorder() / "tray/Blank");
    folder_.file("Virtual Recorder/tray/Blank/disc.ini", "[disc]\nmedium = CD-R\nstatus = blank\nblocks = 30000\n");
  }

  /// What the tray holds behind a recording that nobody disturbs; the tray is put back.
  Content finished(const Recording& recording, const Content& before) {
    fs::copy(recorder() / "tray", folder_ / "aside", fs::copy_options::recursive);
    const auto begun = Clock::now();
    mustSucceed([&] { return Engine(folder_).write(recording, "second"); });
    duration_ = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begun);
    Content after = contentOf(recorder() / "tray");
    fs::remove_all(recorder() / "tray");
    fs::rename(folder_ / "aside", recorder() / "tray");
    if (contentOf(recorder() / "tray") != before) std::exit(2);
    return after;
  }

  /// Images bear the time of their making, so of a data disc the description tells.
  static bool isFinished(const Recording& recording, Content now, Content after) {
    if (recording.data)
      for (Content* content : {&now, &after})
        std::erase_if(*content, [](const auto& file) { return file.first.ends_with(".iso"); });
    std::erase_if(now, [](const auto& file) { return file.first.ends_with(".new") || file.first.ends_with(".cue"); });
    std::erase_if(after, [](const auto& file) { return file.first.ends_with(".cue"); });
    return now == after;
  }

  /// The sectors that were there before are still there.
  static bool keepsWhatWasRecorded(const Content& now, const Content& before) {
    for (const auto& [path, bytes] : before)
      if (path.ends_with(".bin") || path.ends_with(".iso"))
        if (!now.contains(path) || !now.at(path).starts_with(bytes)) return false;
    return true;
  }

  void judge(const Recording& recording, const Content& shelf, const Content& before, const Content& after) {
    const auto present = virtualrecorder::findVirtualRecorders(HostPath(folder_.path()));
    const auto state = present.at(0)->look()->disc;
    Content now = contentOf(recorder() / "tray");
    const bool isSpoilt = state && state->status == DiscClosed && state->freeAudioBlocks == 0 &&
                          state->tracks.size() == (recording.behindAnother ? 1U : 0U);
    // What is in the making beside the disc's description, and sectors that never came, are nothing of the disc.
    std::erase_if(now, [](const auto& file) {
      return file.first.ends_with(".new") ||
             (!file.first.ends_with(".ini") && file.first.find('/') != std::string::npos && file.second.empty());
    });
    const bool kept = contentOf(recorder() / "shelf") == shelf && keepsWhatWasRecorded(now, before);
    if (kept && now == before)
      ++asBefore;
    else if (kept && isSpoilt)
      ++spoilt;
    else if (kept && isFinished(recording, now, after))
      ++complete;
    else
      tell(recording);
  }

  void tell(const Recording& recording) {
    ++wrong;
    const fs::path kept = fs::temp_directory_path() / ("kill-writes-wrong-" + std::to_string(wrong));
    fs::remove_all(kept);
    fs::copy(recorder(), kept, fs::copy_options::recursive);
    std::cout << "wrong: " << recording.name << ", see " << kept << '\n';
  }

  fakes::TempFolder folder_;
  std::chrono::microseconds duration_{0};
  std::mt19937_64 random_{std::random_device{}()};
};

}  // namespace

int main(int argc, char** argv) {
  const int kills = argc > 1 ? std::atoi(argv[1]) : 100;
  Attack attack;
  for (int kill = 0; kill < kills; ++kill)
    attack.killOne(recordings[static_cast<std::size_t>(kill) % std::size(recordings)]);
  std::cout << "attack: " << kills << " kills of a recording, " << attack.asBefore << " discs as before, "
            << attack.spoilt << " spoilt, " << attack.complete << " finished, " << attack.wrong << " wrong\n";
  return attack.wrong == 0 ? 0 : 1;
}
