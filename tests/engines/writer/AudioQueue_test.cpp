#include "engines/writer/AudioQueue.h"

#include <catch2/catch.hpp>
#include <string>

namespace trackloom::engines::writer {

namespace {

std::string shown(const AudioQueue& queue) {
  std::string text;
  for (const AudioEntry& entry : queue.entries()) text += std::to_string(entry.number) + entry.path.text + " ";
  return text;
}

}  // namespace

TEST_CASE("Tracks keep the numbers that they were given, repeated ones and gaps alike") {
  AudioQueue queue;
  queue.add({HostPath("a"), 3, 10});
  queue.add({HostPath("b"), 3, 20});
  queue.add({HostPath("c"), -7, 30});
  CHECK(shown(queue) == "3a 3b -7c ");
  CHECK(queue.blocks() == 60);
}

TEST_CASE("Removing a number takes its first track and renumbers none") {
  AudioQueue queue;
  queue.add({HostPath("a"), 1, 10});
  queue.add({HostPath("b"), 2, 20});
  queue.add({HostPath("c"), 1, 30});
  CHECK(queue.remove(1));
  CHECK(shown(queue) == "2b 1c ");
  CHECK(queue.blocks() == 50);
  CHECK_FALSE(queue.remove(3));
  CHECK(queue.remove(1));
  CHECK_FALSE(queue.remove(1));
  CHECK(shown(queue) == "2b ");
  queue.add({HostPath("d"), 1, 1});
  CHECK(queue.remove(1));
  queue.clear();
  CHECK(queue.empty());
  CHECK(queue.blocks() == 0);
  CHECK_FALSE(queue.remove(2));
}

TEST_CASE("The disc takes tracks by number and equal numbers as they were queued") {
  AudioQueue queue;
  queue.add({HostPath("c"), 9, 1});
  queue.add({HostPath("a"), 2, 1});
  queue.add({HostPath("d"), 9, 1});
  queue.add({HostPath("b"), 4, 1});
  CHECK(queue.discOrder() == std::vector<HostPath>{HostPath("a"), HostPath("b"), HostPath("c"), HostPath("d")});
}

TEST_CASE("The length of a queue stops at what 32 bits hold and comes back from there") {
  AudioQueue queue;
  queue.add({HostPath("a"), 1, 2000000000});
  queue.add({HostPath("b"), 2, 2000000000});
  CHECK(queue.blocks() == 2147483647);
  CHECK(queue.remove(1));
  CHECK(queue.blocks() == 2000000000);
}

}  // namespace trackloom::engines::writer
