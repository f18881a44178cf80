#pragma once

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <catch2/catch.hpp>
#include <string>

namespace trackloom::fakes {

/// A program of the machine that works in a folder until this goes.
class SleepingProgram {
 public:
  explicit SleepingProgram(const std::string& folder) {
    std::string name = "sleep";
    std::string time = "600";
    char* words[] = {name.data(), time.data(), nullptr};
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    REQUIRE(::posix_spawnp(&id_, "sleep", &actions, nullptr, words, environ) == 0);
    ::posix_spawn_file_actions_destroy(&actions);
  }
  ~SleepingProgram() {
    ::kill(id_, SIGKILL);
    ::waitpid(id_, nullptr, 0);
  }
  SleepingProgram(const SleepingProgram&) = delete;
  SleepingProgram& operator=(const SleepingProgram&) = delete;

  pid_t id() const { return id_; }

 private:
  pid_t id_ = 0;
};

}  // namespace trackloom::fakes
