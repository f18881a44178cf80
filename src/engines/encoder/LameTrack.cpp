#include "engines/encoder/LameTrack.h"

#include <string>

#include "engines/ground/EngineError.h"

namespace trackloom::engines::encoder {

namespace {

constexpr int sampleRate = 44100;
constexpr int channels = 2;
/// What the library may hold back from earlier calls, by its own documentation.
constexpr std::size_t heldBack = 7200;

EngineError failure(const std::string& what) {
  return {ErrorKind::WriteBuffer, 0, "the MP3 encoder " + what};
}

std::vector<std::byte> cutTo(std::vector<std::byte> bytes, int length) {
  if (length < 0) throw failure("failed with " + std::to_string(length));
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

unsigned char* memoryOf(std::vector<std::byte>& bytes) {
  return reinterpret_cast<unsigned char*>(bytes.data());
}

}  // namespace

/// By itself the library takes the samples of a disc, makes streams of a constant rate and writes the Info header, but
/// gives those of a low rate fewer samples.
LameTrack::LameTrack(std::int32_t kbps) : lame_(lame_init()) {
  if (!lame_) throw failure("has no memory");
  lame_set_out_samplerate(lame_.get(), sampleRate);
  lame_set_brate(lame_.get(), kbps);
  if (lame_init_params(lame_.get()) < 0) throw failure("does not know " + std::to_string(kbps) + " kbps");
}

std::vector<std::byte> LameTrack::feed(std::span<const std::int16_t> samples) {
  const std::size_t frames = samples.size() / channels;
  std::vector<std::byte> bytes(frames + frames / 4 + heldBack);
  // The library reads the samples only, though it asks for them as if it would write.
  auto* sound = const_cast<std::int16_t*>(samples.data());
  const int length = lame_encode_buffer_interleaved(lame_.get(), sound, static_cast<int>(frames), memoryOf(bytes),
                                                    static_cast<int>(bytes.size()));
  return cutTo(std::move(bytes), length);
}

std::vector<std::byte> LameTrack::finish() {
  std::vector<std::byte> bytes(heldBack);
  const int length = lame_encode_flush(lame_.get(), memoryOf(bytes), static_cast<int>(bytes.size()));
  return cutTo(std::move(bytes), length);
}

std::vector<std::byte> LameTrack::infoFrame() {
  std::vector<std::byte> bytes(heldBack);
  const std::size_t length = lame_get_lametag_frame(lame_.get(), memoryOf(bytes), bytes.size());
  if (length == 0 || length > bytes.size()) throw failure("has no Info header");
  return cutTo(std::move(bytes), static_cast<int>(length));
}

}  // namespace trackloom::engines::encoder
