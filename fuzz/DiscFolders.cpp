#include "DiscFolders.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "engines/ripper/RecorderDrive.h"
#include "engines/virtual/VirtualDisc.h"
#include "engines/virtual/VirtualRecorders.h"

namespace trackloom::fuzz {

namespace {

namespace fs = std::filesystem;

/// Sectors of one reading. Files are holes, so a whole disc costs nothing, but to read one takes its time: of each
/// track the beginning and the end.
constexpr std::int32_t atOnce = 64;

void require(bool holds) {
  if (!holds) std::abort();
}

fs::path ownFolder() {
  std::string pattern = (fs::temp_directory_path() / "trackloom-fuzz-XXXXXX").string();
  require(::mkdtemp(pattern.data()) != nullptr);
  return pattern;
}

void write(const fs::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}

/// Files of the length that these words ask for, where they make sense.
void layOutSectors(const fs::path& disc, std::string_view ini) {
  std::int64_t audio = 0;
  std::int64_t data = 0;
  try {
    const auto content = engines::virtualrecorder::VirtualDisc::parse(ini);
    audio = content.end(AudioBlocks) * std::int64_t{2352};
    data = content.end(DataBlocks) * std::int64_t{2048};
  } catch (const engines::virtualrecorder::DamagedDisc&) {
    audio = 2352;
  }
  for (const auto& [name, size] : {std::pair("disc.bin", audio), std::pair("disc.iso", data)}) {
    write(disc / name, "");
    fs::resize_file(disc / name, static_cast<std::uintmax_t>(size));
  }
}

void readTrack(engines::DiscReading& reading, const engines::ContentsTrack& track) {
  const std::int32_t count = std::min(atOnce, track.length);
  for (const std::int32_t at : {track.start, track.end() - count}) {
    const auto sound = reading.read(at, count, [](engines::ReadTrouble, std::int32_t) {}, {});
    require(sound.size() == static_cast<std::size_t>(count) * 2352);
  }
}

void readAll(engines::ReadingDrive& drive) {
  const auto contents = drive.contents();
  if (!contents) return;
  require(!contents->tracks.empty());
  const auto reading = drive.begin(0);
  std::int32_t end = 0;
  for (const engines::ContentsTrack& track : contents->tracks) {
    require(track.start >= end && track.length > 0 && track.end() <= contents->leadOut);
    end = track.end();
    if (track.kind == AudioBlocks) readTrack(*reading, track);
  }
}

/// In small letters, which are the same words, and without what would keep the trial: a drive that hangs, or that has a
/// real one's pace.
std::string recorderIni(std::string_view bytes) {
  std::string text(bytes);
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  for (const char* word : {"hang", "pacing"})
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word)) text[at] = '-';
  return text;
}

}  // namespace

struct DiscFolderTrial::State {
  fs::path folder = ownFolder();
  std::shared_ptr<engines::ReadingDrive> drive;
};

DiscFolderTrial::DiscFolderTrial() : state_(std::make_unique<State>()) {
  engines::virtualrecorder::createVirtualRecorder(HostPath((state_->folder / "Virtual Recorder").string()));
  const auto recorders = engines::virtualrecorder::findVirtualRecorders(HostPath(state_->folder.string()));
  state_->drive = std::make_shared<engines::ripper::RecorderDrive>(recorders.front());
}

DiscFolderTrial::~DiscFolderTrial() {
  std::error_code ignored;
  fs::remove_all(state_->folder, ignored);
}

void DiscFolderTrial::run(std::string_view bytes) {
  const fs::path disc = state_->folder / "Virtual Recorder" / "tray" / "Disc 0001";
  const std::string_view ini = bytes.substr(0, bytes.find('\0'));
  const std::string_view recorder = ini.size() < bytes.size() ? bytes.substr(ini.size() + 1) : std::string_view();
  write(disc / "disc.ini", ini);
  write(state_->folder / "Virtual Recorder" / "recorder.ini", recorderIni(recorder));
  layOutSectors(disc, ini);
  try {
    state_->drive->names();
    readAll(*state_->drive);
  } catch (const engines::EngineError&) {
    return;
  }
}

}  // namespace trackloom::fuzz
