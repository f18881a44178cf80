#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <thread>

#include "engines/audio/SoundFiles.h"
#include "engines/ground/EngineError.h"

namespace trackloom::engines::audio {

namespace {

void checkRefused(const HostPath& path) {
  INFO(path.text);
  AudioFiles files;
  CHECK_FALSE(files.blocks(path));
  CHECK_FALSE(files.blocks(path));
  CHECK_THROWS_AS(files.open(path), EngineError);
}

// Puts other bytes into a file of the same length, and the time of its last change back.
void replaceSecretly(const HostPath& path, const std::string& bytes) {
  struct stat before {};
  REQUIRE(stat(path.text.c_str(), &before) == 0);
  const int file = ::open(path.text.c_str(), O_WRONLY | O_CLOEXEC);
  REQUIRE(write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
  const timespec times[] = {before.st_atim, before.st_mtim};
  REQUIRE(futimens(file, times) == 0);
  close(file);
}

std::string damaged(std::string bytes, std::mt19937& random) {
  if (random() % 2 == 0) bytes.resize(random() % bytes.size());
  for (auto flips = random() % 40; flips > 0 && !bytes.empty(); --flips) {
    const std::size_t range = random() % 2 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 250);
    char& byte = bytes[random() % range];
    byte = static_cast<char>(byte ^ 1 << random() % 8);
  }
  return bytes;
}

// Whatever the bytes are, a file is refused, or plays at the very length that was proven.
void checkHarmless(const HostPath& path) {
  AudioFiles files;
  files.blocks(path);
  std::unique_ptr<AudioStream> stream;
  try {
    stream = files.open(path);
  } catch (const EngineError& error) {
    CHECK(error.words().starts_with(path.text + ": "));
    return;
  }
  CHECK(files.blocks(path) == stream->blocks());
  CHECK(readAll(*stream).size() == static_cast<std::size_t>(stream->blocks()) * SectorSamples);
}

}  // namespace

TEST_CASE_METHOD(SoundFolder, "MP3 files of another sample rate, layer or number of channels are refused") {
  write("source.wav", wavBytes(bytesOf(music(30'000))));
  const std::string command = GENERATE(as<std::string>{},                             //
                                       "lame --resample 48 source.wav other",         //
                                       "lame --resample 32 source.wav other",         //
                                       "lame --resample 22.05 source.wav other",      //
                                       "lame --resample 11.025 source.wav other",     //
                                       "lame -m m source.wav other",                  //
                                       "ffmpeg -i source.wav -c:a mp2 -f mp2 other",  //
                                       "ffmpeg -i source.wav -c:a libmp3lame -f wav other");
  run(command);
  checkRefused(at("other"));
}

TEST_CASE_METHOD(SoundFolder, "WAV files of another form are refused") {
  const std::string body = bytesOf(music(6'000));
  const auto header = GENERATE(as<WavHeader>{}, WavHeader{.channels = 1}, WavHeader{.channels = 4},
                               WavHeader{.rate = 48'000}, WavHeader{.rate = 22'050}, WavHeader{.bits = 8},
                               WavHeader{.tag = 3, .bits = 64}, WavHeader{.tag = 2, .bits = 4}, WavHeader{.tag = 0x55},
                               WavHeader{.tag = 6, .bits = 8}, WavHeader{.magic = "RIFX"}, WavHeader{.magic = "RF64"},
                               WavHeader{.magic = "riff"}, WavHeader{.magic = "FORM"});
  INFO(header.magic << " " << header.tag << " " << header.channels << " " << header.rate << " " << header.bits);
  checkRefused(write("sound.wav", wavBytes(body, header)));
}

TEST_CASE_METHOD(SoundFolder, "Other sound formats are refused") {
  write("source.wav", wavBytes(bytesOf(music(30'000))));
  const std::string command = GENERATE(as<std::string>{},                                                   //
                                       "sox source.wav other.aiff", "sox source.wav other.flac",            //
                                       "sox source.wav other.ogg", "sox source.wav other.au",               //
                                       "sox -D source.wav other.raw vol 0.003",                             //
                                       "sox source.wav -e ms-adpcm other.wav",                              //
                                       "sox source.wav -e ima-adpcm other.wav",                             //
                                       "sox source.wav -e a-law other.wav",                                 //
                                       "ffmpeg -i source.wav other.w64", "ffmpeg -i source.wav other.m4a",  //
                                       "ffmpeg -i source.wav -rf64 always other.wav");
  run(command);
  for (const auto& entry : std::filesystem::directory_iterator(at("").text))
    if (entry.path().stem() == "other") checkRefused(HostPath(entry.path()));
}

TEST_CASE_METHOD(SoundFolder, "Files that hold no sound are refused") {
  const std::string bytes = GENERATE(
      as<std::string>{}, "", "x", "ID3", "RIFF", "RIFF....WAVE", "This is a text that somebody called a song.\n",
      std::string(200'000, 'x'), std::string(100'000, '\0'), std::string(100'000, '\xFF'), "\xFF\xFB\x90\x64",
      "\xFF\xFB\x90\x64" + std::string(413, '\0'), id3v2Tag(1'000, 1'000), id3v2Tag(0, 0x0FFF'FFFF));
  checkRefused(write("song.mp3", bytes));
}

TEST_CASE_METHOD(SoundFolder, "What is no regular file is refused at once") {
  REQUIRE(mkfifo(at("pipe.mp3").text.c_str(), 0600) == 0);
  std::filesystem::create_directory(at("folder.wav").text);
  std::filesystem::create_symlink("loop.mp3", at("loop.mp3").text);

  for (const char* name : {"pipe.mp3", "folder.wav", "loop.mp3", "missing.mp3", ""}) checkRefused(at(name));
  checkRefused(HostPath("/dev/zero"));
  checkRefused(HostPath(""));
}

TEST_CASE_METHOD(SoundFolder, "A refusal says which file and why") {
  AudioFiles files;
  CHECK_THROWS_WITH(files.open(at("gone.mp3")), Catch::Contains("gone.mp3") && Catch::Contains("No such file"));
  CHECK_THROWS_WITH(files.open(write("text.mp3", "text")), Catch::Contains("text.mp3") && Catch::Contains("44.1 kHz"));
  CHECK_THROWS_WITH(files.open(HostPath("/dev/null")), Catch::Contains("not a regular file"));
}

TEST_CASE_METHOD(SoundFolder, "Names of any bytes open") {
  const auto path = write("\xFF\xFE \n'\"*\xC3\xBC.wav", wavBytes(bytesOf(music(600))));
  AudioFiles files;
  CHECK(files.blocks(path) == 2);
  CHECK(files.open(path)->blocks() == 2);
}

TEST_CASE_METHOD(SoundFolder, "A file that vanished after it was measured can't be opened any more") {
  AudioFiles files;
  const auto path = write("sound.wav", wavBytes(bytesOf(music(600))));
  CHECK(files.blocks(path) == 2);
  REQUIRE(unlink(path.text.c_str()) == 0);

  CHECK_FALSE(files.blocks(path));
  CHECK_THROWS_WITH(files.open(path), path.text + ": No such file or directory");
}

TEST_CASE_METHOD(SoundFolder, "A file is measured once, and the measure is kept for accepted and refused files alike") {
  AudioFiles files;
  const auto good = write("good.wav", wavBytes(bytesOf(music(600))));
  const auto bad = write("bad.wav", "xxxx");
  CHECK(files.blocks(good) == 2);
  CHECK_FALSE(files.blocks(bad));

  const std::uint64_t before = bytesRead();
  for (int time = 0; time < 10; ++time) CHECK(files.blocks(good) == 2);
  for (int time = 0; time < 10; ++time) CHECK_FALSE(files.blocks(bad));
  CHECK(bytesRead() - before < 1000);
}

TEST_CASE_METHOD(SoundFolder, "A file that changed within its size and its time of change is measured anew") {
  AudioFiles files;
  const std::string sound = wavBytes(bytesOf(music(600)));
  const auto path = write("sound.wav", sound);
  CHECK(files.blocks(path) == 2);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  replaceSecretly(path, wavBytes(bytesOf(music(600)), {.dataSize = 400}));
  CHECK(files.blocks(path) == 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  replaceSecretly(path, std::string(sound.size(), 'x'));
  CHECK_FALSE(files.blocks(path));
}

TEST_CASE_METHOD(SoundFolder, "A file that changed within one second is measured anew") {
  AudioFiles files;
  const auto path = write("sound.wav", wavBytes(bytesOf(music(6'000))));
  CHECK(files.blocks(path) == 11);
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  std::fstream(path.text, std::ios::binary | std::ios::in | std::ios::out)
      << wavBytes(bytesOf(music(6'000)), {.dataSize = 400}).substr(0, 44);
  CHECK(files.blocks(path) == 1);
}

TEST_CASE_METHOD(SoundFolder, "A file that changed is measured anew") {
  AudioFiles files;
  const auto path = write("sound.wav", wavBytes(bytesOf(music(600))));
  CHECK(files.blocks(path) == 2);

  write("sound.wav", wavBytes(bytesOf(music(6'000))));
  CHECK(files.blocks(path) == 11);
  CHECK(files.open(path)->blocks() == 11);

  write("other.wav", wavBytes(bytesOf(music(6'000)), {.channels = 1}));
  std::filesystem::rename(at("other.wav").text, path.text);
  CHECK_FALSE(files.blocks(path));
}

TEST_CASE_METHOD(SoundFolder, "Many threads may ask and play at once") {
  write("source.wav", wavBytes(bytesOf(music(30'000))));
  run("lame -t -V 2 source.wav bare.mp3 && lame -V 2 source.wav header.mp3");
  const std::int32_t bare = blocksFor(decodedByFfmpeg("bare.mp3").size() / 2);
  AudioFiles files;
  std::vector<Samples> heard(8);
  std::vector<std::thread> threads;
  threads.reserve(heard.size());
  for (Samples& samples : heard)
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) files.blocks(at(i % 2 == 0 ? "bare.mp3" : "header.mp3"));
      samples = readAll(*files.open(at("bare.mp3")));
    });
  for (std::thread& thread : threads) thread.join();

  CHECK(files.blocks(at("bare.mp3")) == bare);
  for (const Samples& samples : heard) {
    CHECK(samples.size() == static_cast<std::size_t>(bare) * SectorSamples);
    CHECK(largestDifference(samples, heard.front()) == 0);
  }
}

TEST_CASE_METHOD(SoundFolder, "No damage to a file does harm") {
  write("source.wav", wavBytes(bytesOf(music(20'000))));
  const std::string maker = GENERATE(as<std::string>{},                                   //
                                     "cp source.wav good",                                //
                                     "sox -D source.wav -b 24 -t wav good",               //
                                     "sox source.wav -e float -b 32 -t wav good",         //
                                     "lame -V 2 --tt Title --add-id3v2 source.wav good",  //
                                     "lame -t -b 128 source.wav good",                    //
                                     "lame --freeformat -b 400 source.wav good");
  INFO(maker);
  run(maker);
  const std::string good = read("good");
  std::mt19937 random(20'231'105);
  for (int round = 0; round < 60; ++round) checkHarmless(write("bad", damaged(good, random)));
}

}  // namespace trackloom::engines::audio
