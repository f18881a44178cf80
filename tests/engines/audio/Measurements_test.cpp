#include "engines/audio/Measurements.h"

#include <atomic>
#include <catch2/catch.hpp>
#include <future>
#include <stdexcept>

namespace trackloom::engines::audio {

namespace {

const HostPath a("/net/a.mp3");
const HostPath b("/home/b.mp3");

Measured measured(std::int64_t frames, bool proven) {
  return {.note = {}, .length = SoundLength{.frames = frames, .proven = proven}, .blocks = 1};
}

/// A measuring that does not end before it is let.
struct Slow {
  std::promise<void> begun;
  std::promise<void> answer;

  Measured operator()() {
    begun.set_value();
    answer.get_future().wait();
    return measured(2000, true);
  }
};

std::int64_t framesOf(Measurements& all, const HostPath& path, Proof proof, std::int64_t frames) {
  return all.find(path, {}, proof, [&] { return measured(frames, proof == Proof::EveryFrame); }).length->frames;
}

}  // namespace

TEST_CASE("A file that hangs while it is measured holds up neither other files nor what is known of it") {
  Measurements all;
  CHECK(framesOf(all, a, Proof::Header, 1000) == 1000);
  Slow slow;
  auto proof = std::async(std::launch::async, [&] { return all.find(a, {}, Proof::EveryFrame, std::ref(slow)); });
  slow.begun.get_future().wait();
  CHECK(framesOf(all, a, Proof::Header, 1) == 1000);
  CHECK(framesOf(all, b, Proof::Header, 3000) == 3000);
  CHECK(framesOf(all, b, Proof::EveryFrame, 3001) == 3001);
  slow.answer.set_value();
  CHECK(proof.get().length->frames == 2000);
  CHECK(framesOf(all, a, Proof::Header, 1) == 2000);
}

TEST_CASE("Whoever asks for what is being measured gets that answer, and nothing is measured twice") {
  Measurements all;
  Slow slow;
  auto first = std::async(std::launch::async, [&] { return all.find(a, {}, Proof::EveryFrame, std::ref(slow)); });
  slow.begun.get_future().wait();
  std::atomic<bool> twice = false;
  auto second = std::async(std::launch::async, [&] {
    return all.find(a, {}, Proof::EveryFrame, [&] {
      twice = true;
      return measured(1, true);
    });
  });
  slow.answer.set_value();
  CHECK(first.get().length->frames == 2000);
  CHECK(second.get().length->frames == 2000);
  CHECK_FALSE(twice);
}

TEST_CASE("What is known counts for the file as it was, for the proof that was asked, and for refusals") {
  Measurements all;
  CHECK(framesOf(all, a, Proof::Header, 1000) == 1000);
  CHECK(framesOf(all, a, Proof::EveryFrame, 1001) == 1001);
  CHECK(framesOf(all, a, Proof::EveryFrame, 1002) == 1001);
  FileNote longer;
  longer.size = 5;
  CHECK(all.find(a, longer, Proof::Header, [] { return measured(7, false); }).length->frames == 7);
  int asked = 0;
  const auto refuse = [&] {
    ++asked;
    return Measured{};
  };
  CHECK_FALSE(all.find(b, {}, Proof::Header, refuse).length);
  CHECK_FALSE(all.find(b, {}, Proof::EveryFrame, refuse).length);
  CHECK(asked == 1);
}

TEST_CASE("A measuring that fails leaves nothing behind, and the next one may succeed") {
  Measurements all;
  CHECK_THROWS_WITH(all.find(a, {}, Proof::Header, []() -> Measured { throw std::runtime_error("gone"); }), "gone");
  CHECK(framesOf(all, a, Proof::Header, 5) == 5);
}

}  // namespace trackloom::engines::audio
