#include "engines/writer/AudioQueue.h"

#include <catch2/catch.hpp>
#include <string>

namespace trackloom::engines::writer {

namespace {

AudioEntry entry(const char* path, std::int16_t number, std::int32_t blocks) {
  return {std::make_shared<Source>(HostPath(path), FileNote{}), number, blocks};
}

std::string shown(const AudioQueue& queue) {
  std::string text;
  for (const AudioEntry& entry : queue.entries())
    text += std::to_string(entry.number) + entry.source->path().text + " ";
  return text;
}

}  // namespace

TEST_CASE("Tracks keep the numbers that they were given, repeated ones and gaps alike") {
  AudioQueue queue;
  queue.add(entry("a", 3, 10));
  queue.add(entry("b", 3, 20));
  queue.add(entry("c", -7, 30));
  CHECK(shown(queue) == "3a 3b -7c ");
  CHECK(queue.blocks() == 60);
}

TEST_CASE("Removing a number takes its first track and renumbers none") {
  AudioQueue queue;
  queue.add(entry("a", 1, 10));
  queue.add(entry("b", 2, 20));
  queue.add(entry("c", 1, 30));
  CHECK(queue.remove(1));
  CHECK(shown(queue) == "2b 1c ");
  CHECK(queue.blocks() == 50);
  CHECK_FALSE(queue.remove(3));
  CHECK(queue.remove(1));
  CHECK_FALSE(queue.remove(1));
  CHECK(shown(queue) == "2b ");
  queue.add(entry("d", 1, 1));
  CHECK(queue.remove(1));
  queue.clear();
  CHECK(queue.empty());
  CHECK(queue.blocks() == 0);
  CHECK_FALSE(queue.remove(2));
}

TEST_CASE("The disc takes tracks by number and equal numbers as they were queued") {
  AudioQueue queue;
  queue.add(entry("c", 9, 1));
  queue.add(entry("a", 2, 1));
  queue.add(entry("d", 9, 1));
  queue.add(entry("b", 4, 1));
  std::string order;
  for (const auto& source : queue.discOrder()) order += source->path().text;
  CHECK(order == "abcd");
}

TEST_CASE("The length of a queue stops at what 32 bits hold and comes back from there") {
  AudioQueue queue;
  queue.add(entry("a", 1, 2000000000));
  queue.add(entry("b", 2, 2000000000));
  CHECK(queue.blocks() == 2147483647);
  CHECK(queue.remove(1));
  CHECK(queue.blocks() == 2000000000);
}

}  // namespace trackloom::engines::writer
