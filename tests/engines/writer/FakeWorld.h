#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engines/writer/DiscWriters.h"
#include "engines/writer/FakeRecorder.h"
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
  FakeWorld();
  ~FakeWorld();
  FakeWorld(const FakeWorld&) = delete;
  FakeWorld& operator=(const FakeWorld&) = delete;

  HostPath track(const std::string& name, std::int32_t blocks) const;
  static std::string samples(const std::string& name, std::int32_t blocks);
  bool write();
  std::vector<std::string> linesOfWrite();
  bool runUntilLine(const std::string& line);

  TempFolder folder;
  std::shared_ptr<FakeRecorder> recorder;
  fakes::FakeEventQueue queue;
  fakes::FakePatience patience;
  fakes::WriterTranscript heard;
  DiscWriters writers;
  std::unique_ptr<CDWriterXP> writer;
};

using Lines = std::vector<std::string>;

}  // namespace trackloom::engines::writer
