#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "engines/writer/DiscWriters.h"
#include "engines/writer/FakeWrite.h"
#include "fakes/FakeEventQueue.h"
#include "fakes/FakePatience.h"
#include "fakes/TempFolder.h"
#include "fakes/TestFiles.h"
#include "fakes/WriterTranscript.h"

namespace trackloom::engines::writer {

using fakes::contentOf;
using fakes::noise;
using fakes::TempFolder;
using fakes::wav;

/// The real engine with a recorder in memory, which has a blank disc in it.
class FakeWorld {
 public:
  FakeWorld() {
    recorder->insert(FakeDisc::blank());
    writer = writers.create(heard);
    writer->SelectDrive(0);
  }

  HostPath track(const std::string& name, std::int32_t blocks) const {
    return folder.file(name + ".wav", wav(samples(name, blocks)));
  }
  static std::string samples(const std::string& name, std::int32_t blocks) {
    return noise(static_cast<std::size_t>(blocks) * 2352, static_cast<unsigned char>(name.front()));
  }
  bool write() {
    heard.lines.clear();
    writer->StartWrite();
    return queue.runUntil([this] { return heard.ended(); });
  }
  std::vector<std::string> linesOfWrite() {
    write();
    return heard.lines;
  }
  bool runUntilLine(const std::string& line) {
    return queue.runUntil([&] { return heard.has(line); });
  }

  TempFolder folder;
  std::shared_ptr<FakeRecorder> recorder = std::make_shared<FakeRecorder>();
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  DiscWriters writers{
      {recorder}, std::make_shared<audio::AudioFiles>(), queue, patience, {150, folder.host("scratch")}};
  std::unique_ptr<CDWriterXP> writer;
};

using Lines = std::vector<std::string>;

}  // namespace trackloom::engines::writer
