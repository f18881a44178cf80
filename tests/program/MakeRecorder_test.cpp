#include <catch2/catch.hpp>
#include <cstdio>
#include <filesystem>
#include <string>

#include "engines/virtual/VirtualRecorders.h"
#include "fakes/TempFolder.h"

namespace trackloom {

using fakes::TempFolder;
namespace fs = std::filesystem;

namespace {

struct Said {
  int status = -1;
  std::string words;
};

/// Runs the program that lays out recorders, and hears what it says.
Said makeRecorder(const std::string& arguments) {
  const std::string command = std::string("'") + TRACKLOOM_MAKE_RECORDER + "' " + arguments + " 2>&1";
  FILE* const pipe = ::popen(command.c_str(), "r");
  REQUIRE(pipe != nullptr);
  Said said;
  for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe)) said.words += static_cast<char>(byte);
  const int end = ::pclose(pipe);
  said.status = WIFEXITED(end) ? WEXITSTATUS(end) : -1;
  return said;
}

}  // namespace

TEST_CASE("A recorder is laid out in a folder of any depth, without a word, and laid out again it stays as it is") {
  const TempFolder folder;
  for (int time = 1; time <= 2; ++time) {
    const Said said = makeRecorder("'" + (folder / "some/where/Recorder") + "'");
    CHECK(said.status == 0);
    CHECK(said.words.empty());
    CHECK(fs::is_directory(folder / "some/where/Recorder/tray"));
    CHECK(fs::is_directory(folder / "some/where/Recorder/shelf"));
    CHECK(folder.has("some/where/Recorder/recorder.ini"));
  }
}

TEST_CASE("A recorder is asked for with one folder, no more and no less") {
  for (const char* arguments : {"", "one two"}) {
    const Said said = makeRecorder(arguments);
    CHECK(said.status == 2);
    CHECK(said.words == "usage: make-recorder <folder>\n");
  }
}

TEST_CASE("A recorder that cannot be laid out is told with its folder and the cause") {
  const TempFolder folder;
  folder.write("file", "in the way");
  const Said said = makeRecorder("'" + (folder / "file/Recorder") + "'");
  CHECK(said.status == 1);
  CHECK(said.words.starts_with("make-recorder: " + (folder / "file/Recorder") + ": "));
  CHECK(said.words.find("Not a directory") != std::string::npos);
}

}  // namespace trackloom
