#include "engines/writer/FakeWorld.h"

namespace trackloom::engines::writer {

FakeWorld::FakeWorld()
    : recorder(std::make_shared<FakeRecorder>()),
      writers{{recorder}, std::make_shared<audio::AudioFiles>(), queue, patience, {150, folder.host("scratch")}} {
  recorder->insert(FakeDisc::blank());
  writer = writers.create(heard);
  writer->SelectDrive(0);
}

FakeWorld::~FakeWorld() = default;

HostPath FakeWorld::track(const std::string& name, std::int32_t blocks) const {
  return folder.file(name + ".wav", wav(samples(name, blocks)));
}

std::string FakeWorld::samples(const std::string& name, std::int32_t blocks) {
  return noise(static_cast<std::size_t>(blocks) * 2352, static_cast<unsigned char>(name.front()));
}

bool FakeWorld::write() {
  heard.lines.clear();
  writer->StartWrite();
  return queue.runUntil([this] { return heard.ended(); });
}

std::vector<std::string> FakeWorld::linesOfWrite() {
  write();
  return heard.lines;
}

bool FakeWorld::runUntilLine(const std::string& line) {
  return queue.runUntil([&] { return heard.has(line); });
}

}  // namespace trackloom::engines::writer
