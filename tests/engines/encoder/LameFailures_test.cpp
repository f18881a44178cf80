#include <lame/lame.h>

#include <catch2/catch.hpp>
#include <optional>
#include <vector>

#include "engines/encoder/LameTrack.h"
#include "engines/ground/EngineError.h"
#include "fakes/NextFunction.h"

namespace {

/// What the library answers to this thread in place of what it would, and what it was asked.
struct Library {
  bool noMemory = false;
  std::optional<int> parameters;
  std::optional<int> encoded;
  std::optional<int> flushed;
  std::optional<std::size_t> infoFrame;
  /// The bytes that the last call had room for.
  std::size_t room = 0;
  int open = 0;
};

Library& library() {
  thread_local Library library;
  return library;
}

using trackloom::fakes::theirs;

}  // namespace

extern "C" {

lame_global_flags* lame_init() {
  if (library().noMemory) return nullptr;
  ++library().open;
  return theirs<decltype(lame_init)>("lame_init")();
}

int lame_close(lame_global_flags* lame) {
  --library().open;
  return theirs<decltype(lame_close)>("lame_close")(lame);
}

int lame_init_params(lame_global_flags* lame) {
  const int answer = theirs<decltype(lame_init_params)>("lame_init_params")(lame);
  return library().parameters.value_or(answer);
}

int lame_encode_buffer_interleaved(lame_global_flags* lame, short* samples, int count, unsigned char* room, int size) {
  library().room = static_cast<std::size_t>(size);
  auto* const encode = theirs<decltype(lame_encode_buffer_interleaved)>("lame_encode_buffer_interleaved");
  return library().encoded ? *library().encoded : encode(lame, samples, count, room, size);
}

int lame_encode_flush(lame_global_flags* lame, unsigned char* room, int size) {
  library().room = static_cast<std::size_t>(size);
  return library().flushed ? *library().flushed
                           : theirs<decltype(lame_encode_flush)>("lame_encode_flush")(lame, room, size);
}

size_t lame_get_lametag_frame(const lame_global_flags* lame, unsigned char* room, size_t size) {
  return library().infoFrame ? *library().infoFrame
                             : theirs<decltype(lame_get_lametag_frame)>("lame_get_lametag_frame")(lame, room, size);
}

}  // extern "C"

namespace trackloom::engines::encoder {

namespace {

constexpr std::size_t sectorFrames = 588;
/// One sector of silence, in frames of two samples.
const std::vector<std::int16_t> sector(sectorFrames * 2);

template <class Deed>
std::string failureOf(const Deed& deed) {
  try {
    deed();
  } catch (const EngineError& error) {
    CHECK(error.kind() == ErrorKind::WriteBuffer);
    CHECK(error.number() == 0);
    return error.words();
  }
  return "";
}

/// A library that answers by itself again behind each test.
struct Given {
  Given() { library() = {}; }
  Given(const Given&) = delete;
  Given& operator=(const Given&) = delete;
  ~Given() { library() = {}; }
};

}  // namespace

TEST_CASE("An encoder that has no memory, or does not know a rate, says so") {
  const Given given;
  library().noMemory = true;
  CHECK(failureOf([] { LameTrack(192); }) == "the MP3 encoder has no memory");
  library().noMemory = false;
  library().parameters = -1;
  CHECK(failureOf([] { LameTrack(192); }) == "the MP3 encoder does not know 192 kbps");
  CHECK(library().open == 0);
}

TEST_CASE("An encoder that fails in the midst of a stream says with which number") {
  const Given given;
  {
    LameTrack track(128);
    library().encoded = -1;
    CHECK(failureOf([&] { track.feed(sector); }) == "the MP3 encoder failed with -1");
    library().flushed = -3;
    CHECK(failureOf([&] { track.finish(); }) == "the MP3 encoder failed with -3");
    library().encoded = library().flushed = 0;
    CHECK(track.feed(sector).empty());
    CHECK(track.finish().empty());
  }
  CHECK(library().open == 0);
}

TEST_CASE("A stream without an Info header, or with one that has no room, is told") {
  const Given given;
  LameTrack track(128);
  const auto header = [&](std::size_t size) {
    library().infoFrame = size;
    std::size_t told = size;
    const std::string failure = failureOf([&] { told = track.infoFrame().size(); });
    CHECK(told == size);
    return failure;
  };
  CHECK(header(0) == "the MP3 encoder has no Info header");
  CHECK(header(1).empty());
  CHECK(header(7200).empty());
  CHECK(header(7201) == "the MP3 encoder has no Info header");
}

TEST_CASE("The library has the room that it asks for: five bytes for four frames, and 7200 for what it held back") {
  const Given given;
  LameTrack track(320);
  track.feed(sector);
  CHECK(library().room == sectorFrames * 5 / 4 + 7200);
  track.finish();
  CHECK(library().room == 7200);
}

}  // namespace trackloom::engines::encoder
