#pragma once

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace trackloom::fakes {

/// How a process of a test's own ended; what it does there reaches the test by its status and by files only.
class ChildProcess {
 public:
  /// Runs `work` in a copy of this process, and waits for its end.
  explicit ChildProcess(const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(work());
    ::waitpid(child, &end_, 0);
  }

  /// The status with which it ended by itself, -1 where a signal ended it.
  int status() const { return WIFEXITED(end_) ? WEXITSTATUS(end_) : -1; }
  /// The signal that ended it, 0 where none did.
  int signal() const { return WIFSIGNALED(end_) ? WTERMSIG(end_) : 0; }

 private:
  int end_ = 0;
};

/// Lets no file of this process grow beyond so many bytes.
inline void limitFiles(rlim_t bytes) {
  const rlimit limit{bytes, bytes};
  ::setrlimit(RLIMIT_FSIZE, &limit);
}

/// The end of a process that is killed in the very write that would take a file beyond `bytes`.
inline ChildProcess killedWhenWriting(rlim_t bytes, const std::function<void()>& work) {
  return ChildProcess([&] {
    std::signal(SIGXFSZ, SIG_DFL);
    const rlimit noCore{};
    ::setrlimit(RLIMIT_CORE, &noCore);
    limitFiles(bytes);
    work();
    return 0;
  });
}

}  // namespace trackloom::fakes
